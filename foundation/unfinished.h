// What a constructor has made so far: undone when it does not get to its end, because the
// destructor does not run then.

#pragma once

namespace zor_internal {

template <typename T>
class Unfinished {
public:
    Unfinished(T* made, void (*undoMaking)(T*)) : object(made), undo(undoMaking) {}
    Unfinished(Unfinished const&) = delete;
    Unfinished& operator=(Unfinished const&) = delete;
    ~Unfinished() {
        if (object) undo(object);
    }

    // From now on the destructor sees to it.
    void finish() { object = nullptr; }

private:
    T* object;
    void (*undo)(T*);
};

} // namespace zor_internal
