// libconfig: a tree of settings that know whether they are numbers, texts or truth values, reached
// by paths such as "line.[2].label"; it validates nothing.

#include <libconfig.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench/floor_store.h"
#include "bench/peer_workloads.h"
#include "bench/value_path.h"

namespace bench {
namespace {

// Writes the data in the library's language.
class ConfigWriter {
public:
    std::string write(PhoneElement const& top) {
        appendAll(top);
        return out;
    }

private:
    void appendAll(PhoneElement const& branch) {
        std::vector<PhoneElement> const& elements = branch.children;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            PhoneNode const* const node = elements[i].node;
            if (elements[i].occurrence == 1)
                out.append(node->name).append(node->occurrences > 1 ? " = ( " : " = ");
            appendOne(elements[i]);
            if (elements[i].occurrence < node->occurrences) {
                out += ", ";
            } else {
                out += node->occurrences > 1 ? " );\n" : ";\n";
            }
        }
    }

    void appendOne(PhoneElement const& element) {
        if (!element.node->type) {
            out += "{ ";
            appendAll(element);
            out += "}";
            return;
        }
        PhoneType const& type = *element.node->type;
        bool const bare = type.base == "int" || type.base == "uint" || type.base == "bool";
        if (type.base == "float") {
            out += std::to_string(std::stod(element.text)); // with a point, or it is an integer
        } else if (bare) {
            out += element.text;
        } else {
            appendQuoted(element.text);
        }
    }

    void appendQuoted(std::string const& text) {
        out += '"';
        for (char const c : text) {
            if (c == '"' || c == '\\') out += '\\';
            out += c;
        }
        out += '"';
    }

    std::string out;
};

class Config {
public:
    static constexpr char const* kName = "libconfig";
    static constexpr int kMostPlaces = kAllPlaces;
    using Place = std::string;

    explicit Config(PhoneData const&) { config_init(&config); }
    Config(Config const&) = delete;
    Config& operator=(Config const&) = delete;
    ~Config() { config_destroy(&config); }

    static std::string inputFrom(PhoneData const& phone) {
        return ConfigWriter().write(phone.tree());
    }

    bool fill(PhoneData const& phone) { return read(inputFrom(phone)); }
    bool read(std::string const& input) { return config_read_string(&config, input.c_str()); }

    void clear() {
        config_destroy(&config);
        config_init(&config);
    }

    std::string write() {
        char* text = nullptr;
        std::size_t length = 0;
        std::FILE* const file = open_memstream(&text, &length);
        config_write(&config, file);
        std::fclose(file);
        std::string written(text, length);
        std::free(text);
        return written;
    }

    static Place placeOf(PhoneValue const& value) {
        return pathTo(value, ".",
                      [](int occurrence) { return ".[" + std::to_string(occurrence - 1) + "]"; });
    }

    long number(Place const& path) {
        int number = 0;
        config_lookup_int(&config, path.c_str(), &number);
        return number;
    }

    std::size_t length(Place const& path) {
        char const* text = "";
        config_lookup_string(&config, path.c_str(), &text);
        return std::strlen(text);
    }

    std::string text(Place const& path) {
        config_setting_t const* const setting = config_lookup(&config, path.c_str());
        switch (setting ? config_setting_type(setting) : CONFIG_TYPE_NONE) {
        case CONFIG_TYPE_INT:
            return std::to_string(config_setting_get_int(setting));
        case CONFIG_TYPE_FLOAT:
            return std::to_string(config_setting_get_float(setting));
        case CONFIG_TYPE_BOOL:
            return config_setting_get_bool(setting) ? "true" : "false";
        case CONFIG_TYPE_STRING:
            return config_setting_get_string(setting);
        default:
            return "";
        }
    }

private:
    config_t config;
};

[[maybe_unused]] bool const added =
    addImport<Config>() && addReads<Config>() && addExport<Config>() && addMemory<Config>();

} // namespace
} // namespace bench
