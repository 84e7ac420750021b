// libyang: a tree of instances of a YANG module, validated, in which lists are hashed by their
// keys. A value is reached by a path, or ("libyanghandle") by its node, which is found ahead of
// time; an import is validated, or ("libyangparsed") only parsed.

#include <libyang/libyang.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "bench/peer_workloads.h"
#include "bench/shapes.h"
#include "bench/yang.h"

namespace bench {
namespace {

struct Free {
    void operator()(ly_ctx* context) const { ly_ctx_destroy(context); }
    void operator()(lyd_node* tree) const { lyd_free_all(tree); }
    void operator()(ly_set* found) const { ly_set_free(found, nullptr); }
};
using Context = std::unique_ptr<ly_ctx, Free>;
using Found = std::unique_ptr<ly_set, Free>;

// Without modules but those that are built in.
Context newContext() {
    ly_ctx* context = nullptr;
    ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIRS, &context);
    return Context(context);
}

bool addModule(Context const& context, std::string const& module) {
    return lys_parse_mem(context.get(), module.c_str(), LYS_IN_YANG, nullptr) == LY_SUCCESS;
}

std::uint32_t numberOf(lyd_node const* node) {
    return static_cast<std::uint32_t>(reinterpret_cast<lyd_node_term const*>(node)->value.int32);
}

class Libyang {
public:
    static constexpr char const* kName = "libyang";
    static constexpr int kMostPlaces = kAllPlaces;
    using Place = std::string;
    using Query = std::string;

    explicit Libyang(PhoneData const& phone) : context(newContext()) {
        addModule(context, yangModule(phone.schema()));
    }

    static std::string inputFrom(PhoneData const& phone) { return yangDocument(phone); }

    bool fill(PhoneData const& phone) { return read(yangDocument(phone)); }
    bool read(std::string const& input) { return parse(input, LYD_PARSE_STRICT); }
    void clear() { tree.reset(); }

    std::string write() {
        char* text = nullptr;
        lyd_print_mem(&text, tree.get(), LYD_XML, LYD_PRINT_SHRINK);
        std::string written = text ? text : "";
        std::free(text);
        return written;
    }

    static Place placeOf(PhoneValue const& value) { return yangPathTo(value); }

    long number(Place const& path) { return numberOf(find(path)); }
    std::size_t length(Place const& path) { return std::strlen(lyd_get_value(find(path))); }

    std::string text(Place const& path) {
        lyd_node const* const node = find(path);
        return node ? lyd_get_value(node) : "";
    }

    bool set(Place const& path, char const* text) {
        return lyd_new_path(tree.get(), nullptr, path.c_str(), text, LYD_NEW_PATH_UPDATE,
                            nullptr) == LY_SUCCESS;
    }

    bool set(Place const& path, long number) {
        char text[24] = {};
        std::to_chars(text, text + sizeof(text) - 1, number);
        return set(path, text);
    }

    static Query queryFor(std::string const& path) { return yangQueryFor(path); }

    std::size_t select(Query const& query) { return search(query)->count; }

    std::vector<std::string> texts(Query const& query) {
        Found const found = search(query);
        std::vector<std::string> texts;
        for (std::uint32_t i = 0; i < found->count; ++i) {
            texts.emplace_back(lyd_get_value(found->dnodes[i]));
        }
        return texts;
    }

protected:
    bool parse(std::string const& input, std::uint32_t options) {
        lyd_node* parsed = nullptr;
        LY_ERR const result = lyd_parse_data_mem(context.get(), input.c_str(), LYD_XML, options,
                                                 LYD_VALIDATE_PRESENT, &parsed);
        tree.reset(parsed);
        return result == LY_SUCCESS && parsed;
    }

    // Null when there is none. Borrowed from the tree.
    lyd_node* find(std::string const& path) {
        lyd_node* found = nullptr;
        lyd_find_path(tree.get(), path.c_str(), 0, &found);
        return found;
    }

private:
    Found search(Query const& query) {
        ly_set* found = nullptr;
        lyd_find_xpath(tree.get(), query.c_str(), &found);
        return Found(found);
    }

    Context context;
    std::unique_ptr<lyd_node, Free> tree;
};

class LibyangParsed : public Libyang {
public:
    static constexpr char const* kName = "libyangparsed";
    using Libyang::Libyang;

    bool read(std::string const& input) { return parse(input, LYD_PARSE_STRICT | LYD_PARSE_ONLY); }
};

class LibyangHandle : public Libyang {
public:
    static constexpr char const* kName = "libyanghandle";
    using Libyang::Libyang;
    using Place = lyd_node*;

    Place placeOf(PhoneValue const& value) { return find(yangPathTo(value)); }

    std::string text(Place node) { return lyd_get_value(node); }

    bool set(Place node, char const* text) {
        LY_ERR const result = lyd_change_term(node, text);
        return result == LY_SUCCESS || result == LY_ENOT; // the same text as before
    }

    bool set(Place node, long number) {
        char text[24] = {};
        std::to_chars(text, text + sizeof(text) - 1, number);
        return set(node, text);
    }
};

// What has all nodes; it looks for some of them.
bool hasNodes(Context const& context, PhoneNode const& root, PhoneNode const& node) {
    if (node.parent && node.order % 97 == 0 &&
        !lys_find_path(context.get(), nullptr, yangPathTo(root, node).c_str(), 0)) {
        return false;
    }
    return std::all_of(node.children.begin(), node.children.end(),
                       [&](auto const& child) { return hasNodes(context, root, *child); });
}

void importDefinition(benchmark::State& state, PhoneNode const& tree) {
    std::string const module = yangModule(tree);
    Context context;
    bool good = true;
    for (auto _ : state) {
        context = newContext();
        Stopwatch const watch(state);
        good &= addModule(context, module);
    }
    if (!good || !hasNodes(context, tree, tree)) fail(state, "another tree");
    countItems(state, nodesBelow(tree));
}

void importTreeDefinition(benchmark::State& state) {
    importDefinition(state, *schemaOf(sizeOf(state)));
}

void importPhoneDefinition(benchmark::State& state) {
    importDefinition(state, phoneData(sizeOf(state)).schema());
}

[[maybe_unused]] bool const added = addImport<Libyang>() && addImport<LibyangParsed>() &&
                                    addReads<Libyang>() && addWrites<Libyang>() &&
                                    addWrites<LibyangHandle>() && addSelects<Libyang>() &&
                                    addExport<Libyang>() && addMemory<Libyang>();
[[maybe_unused]] auto* const definition =
    addWorkload("ImportDefinition", "libyang", importTreeDefinition, phoneSizes())
        -> UseManualTime();
[[maybe_unused]] auto* const phone =
    addWorkload("PhoneDefinition", "libyang", importPhoneDefinition, {1000}) -> UseManualTime();

} // namespace
} // namespace bench
