// An exception on its way past frames that it must not pass through.

#pragma once

#include <exception>

namespace zor_internal {

#ifdef __cpp_exceptions

class KeptException {
public:
    // Calls `work`. False when it threw; that is kept.
    template <typename Work>
    bool keepFrom(Work work) {
        try {
            work();
        } catch (...) {
            thrown = std::current_exception();
            return false;
        }
        return true;
    }

    bool isThere() const { return thrown != nullptr; }

    // Throws it on, if there is one.
    void rethrow() const {
        if (isThere()) std::rethrow_exception(thrown);
    }

private:
    std::exception_ptr thrown;
};

#else

// In a build without exceptions nobody throws.
class KeptException {
public:
    template <typename Work>
    bool keepFrom(Work work) {
        work();
        return true;
    }

    bool isThere() const { return false; }
    void rethrow() const {}
};

#endif

} // namespace zor_internal
