// pugixml: a tree of elements with a parser of its own, searched by compiled XPath. There is no
// schema.

#include <pugixml.hpp>

#include <cstring>
#include <string>

#include "bench/peer_workloads.h"
#include "bench/value_path.h"

namespace bench {
namespace {

// Where the values are in the document.
constexpr char const* kTop = "/deskphone/document";

struct StringWriter : pugi::xml_writer {
    void write(void const* data, std::size_t size) override {
        text.append(static_cast<char const*>(data), size);
    }
    std::string text;
};

class Pugixml {
public:
    static constexpr char const* kName = "pugixml";
    static constexpr int kMostPlaces = kSomePlaces;
    using Place = pugi::xpath_query;
    using Query = pugi::xpath_query;

    explicit Pugixml(PhoneData const&) {}

    static std::string inputFrom(PhoneData const& phone) { return phone.document(); }

    bool fill(PhoneData const& phone) { return read(phone.document()); }
    bool read(std::string const& input) { return document.load_buffer(input.data(), input.size()); }
    void clear() { document.reset(); }

    std::string write() {
        StringWriter writer;
        document.save(writer, "", pugi::format_raw | pugi::format_no_declaration,
                      pugi::encoding_utf8);
        return std::move(writer.text);
    }

    static Place placeOf(PhoneValue const& value) {
        return Place((kTop + bracketPathTo(value)).c_str());
    }

    long number(Place const& path) { return path.evaluate_node(document).node().text().as_int(); }
    std::size_t length(Place const& path) {
        return std::strlen(path.evaluate_node(document).node().text().get());
    }
    std::string text(Place const& path) { return path.evaluate_node(document).node().text().get(); }

    static Query queryFor(std::string const& path) { return Query((kTop + path).c_str()); }
    std::size_t select(Query const& query) { return query.evaluate_node_set(document).size(); }
    std::vector<std::string> texts(Query const& query) {
        std::vector<std::string> texts;
        for (pugi::xpath_node const& found : query.evaluate_node_set(document)) {
            texts.emplace_back(found.node().text().get());
        }
        return texts;
    }

private:
    pugi::xml_document document;
};

[[maybe_unused]] bool const added = addImport<Pugixml>() && addReads<Pugixml>() &&
                                    addSelects<Pugixml>() && addExport<Pugixml>() &&
                                    addMemory<Pugixml>();

} // namespace
} // namespace bench
