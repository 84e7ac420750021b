// GKeyFile: groups of keys with texts, which are read as numbers on demand. A branch's occurrence
// is a group such as "line.3.key.1"; it validates nothing but numbers.

#include <glib.h>

#include <cstring>
#include <memory>
#include <string>

#include "bench/peer_workloads.h"
#include "bench/value_path.h"

namespace bench {
namespace {

class KeyFile {
public:
    static constexpr char const* kName = "glib";
    static constexpr int kMostPlaces = kAllPlaces;
    struct Place {
        std::string group;
        std::string key;
    };

    explicit KeyFile(PhoneData const&) { clear(); }

    static std::string inputFrom(PhoneData const& phone) {
        KeyFile written(phone);
        for (PhoneValue const& value : phone.flat()) {
            Place const place = placeOf(value);
            g_key_file_set_string(written.file.get(), place.group.c_str(), place.key.c_str(),
                                  value.text.c_str());
        }
        return written.write();
    }

    bool fill(PhoneData const& phone) { return read(inputFrom(phone)); }

    bool read(std::string const& input) {
        return g_key_file_load_from_data(file.get(), input.data(), input.size(), G_KEY_FILE_NONE,
                                         nullptr);
    }

    void clear() { file.reset(g_key_file_new()); }

    std::string write() {
        gsize length = 0;
        Text const data(g_key_file_to_data(file.get(), &length, nullptr));
        return {data.get(), length};
    }

    static Place placeOf(PhoneValue const& value) {
        std::string const path =
            pathTo(value, ".", [](int occurrence) { return "-" + std::to_string(occurrence); });
        std::size_t const dot = path.rfind('.');
        return {dot == 0 ? "phone" : path.substr(1, dot - 1), path.substr(dot + 1)};
    }

    long number(Place const& place) {
        return g_key_file_get_integer(file.get(), place.group.c_str(), place.key.c_str(), nullptr);
    }

    std::size_t length(Place const& place) { return std::strlen(newText(place).get()); }

    std::string text(Place const& place) {
        Text const found = newText(place);
        return found ? found.get() : "";
    }

private:
    struct Free {
        void operator()(gchar* text) const { g_free(text); }
        void operator()(GKeyFile* keys) const { g_key_file_free(keys); }
    };
    using Text = std::unique_ptr<gchar, Free>;

    Text newText(Place const& place) {
        return Text(
            g_key_file_get_string(file.get(), place.group.c_str(), place.key.c_str(), nullptr));
    }

    std::unique_ptr<GKeyFile, Free> file;
};

// Not its memory: the library keeps freed blocks for itself, and the next file takes them again.
[[maybe_unused]] bool const added =
    addImport<KeyFile>() && addReads<KeyFile>() && addExport<KeyFile>();

} // namespace
} // namespace bench
