// libxml2: a tree of elements, searched by compiled XPath. It is used without a schema.

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "bench/peer_workloads.h"
#include "bench/value_path.h"

namespace bench {
namespace {

// Where the values are in the document.
constexpr char const* kTop = "/deskphone/document";

struct Free {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
    void operator()(xmlXPathCompExpr* query) const { xmlXPathFreeCompExpr(query); }
    void operator()(xmlXPathObject* result) const { xmlXPathFreeObject(result); }
    void operator()(xmlChar* text) const { xmlFree(text); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Free>;

xmlChar const* toXml(char const* text) { return reinterpret_cast<xmlChar const*>(text); }
char const* fromXml(xmlChar const* text) { return reinterpret_cast<char const*>(text); }

class Libxml2 {
public:
    static constexpr char const* kName = "libxml2";
    static constexpr int kMostPlaces = kSomePlaces;
    using Place = Owned<xmlXPathCompExpr>;
    using Query = Owned<xmlXPathCompExpr>;

    explicit Libxml2(PhoneData const&) {}

    static std::string inputFrom(PhoneData const& phone) { return phone.document(); }

    bool fill(PhoneData const& phone) { return read(phone.document()); }

    bool read(std::string const& input) {
        int const options = XML_PARSE_NONET | XML_PARSE_HUGE;
        document.reset(
            xmlReadMemory(input.data(), static_cast<int>(input.size()), nullptr, nullptr, options));
        if (!document) return false;
        context.reset(xmlXPathNewContext(document.get()));
        return context != nullptr;
    }

    void clear() {
        context.reset();
        document.reset();
    }

    std::string write() {
        xmlChar* text = nullptr;
        int length = 0;
        xmlDocDumpMemoryEnc(document.get(), &text, &length, "UTF-8");
        Owned<xmlChar> const held(text);
        return {fromXml(text), static_cast<std::size_t>(length)};
    }

    static Place placeOf(PhoneValue const& value) { return queryFor(bracketPathTo(value)); }

    long number(Place const& path) { return std::strtol(fromXml(find(path).text()), nullptr, 10); }
    std::size_t length(Place const& path) {
        return static_cast<std::size_t>(xmlStrlen(find(path).text()));
    }
    std::string text(Place const& path) { return fromXml(find(path).text()); }

    static Query queryFor(std::string const& path) {
        return Query(xmlXPathCompile(toXml((kTop + path).c_str())));
    }

    std::size_t select(Query const& query) { return find(query).count(); }

    std::vector<std::string> texts(Query const& query) {
        Results const results = find(query);
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < results.count(); ++i)
            texts.emplace_back(fromXml(results.text(i)));
        return texts;
    }

private:
    class Results {
    public:
        explicit Results(xmlXPathObject* result) : object(result) {}

        std::size_t count() const {
            xmlNodeSet const* const nodes = object ? object->nodesetval : nullptr;
            return nodes ? static_cast<std::size_t>(nodes->nodeNr) : 0;
        }

        // Borrowed from the document. Empty when there is none.
        xmlChar const* text(std::size_t index = 0) const {
            if (index >= count()) return toXml("");
            xmlNode const* const inner = object->nodesetval->nodeTab[index]->children;
            return inner ? inner->content : toXml("");
        }

    private:
        Owned<xmlXPathObject> object;
    };

    Results find(Query const& query) {
        context->node = xmlDocGetRootElement(document.get());
        return Results(xmlXPathCompiledEval(query.get(), context.get()));
    }

    Owned<xmlDoc> document;
    Owned<xmlXPathContext> context;
};

[[maybe_unused]] bool const added = addImport<Libxml2>() && addReads<Libxml2>() &&
                                    addSelects<Libxml2>() && addExport<Libxml2>() &&
                                    addMemory<Libxml2>();

} // namespace
} // namespace bench
