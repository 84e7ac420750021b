// A path against a fixed rich document: select gives what a dull walk over the rules gives, in
// silence and the same each time; every result can be read, and the full path of a result, with an
// occurrence in each step, selects that result alone.

#include <memory>

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/rich_store.h"
#include "fuzz/support/target.h"
#include "tests/document/dull_select.h"
#include "tests/support/text.h"

namespace {

std::string describe(ZorSchemaNode const* node, long occurrence, long flat) {
    return std::string(node->getName()) + ' ' + std::to_string(node->valueIndex) + ' ' +
           std::to_string(occurrence) + ' ' + std::to_string(flat) + '\n';
}

std::string describe(std::vector<Hit> const& hits) {
    std::string text;
    for (Hit const& hit : hits) text += describe(hit.node, hit.occurrence + 1L, hit.flat);
    return text;
}

// From the start, by the cursor.
std::string describe(ZorResultSet& results) {
    std::string text;
    unsigned long count = 0;
    for (results.rewind(); !results.eof(); results.next(), ++count) {
        long const flat = results.results[results.cursor]->flat;
        text += describe(results.getDefinition(), results.getOccurrence(), flat);
    }
    check(count == results.getResultCount(), "the cursor meets every result once");
    return text;
}

// Empty when a name on the way means something else in a path.
std::string fullPathOf(ZorSchemaNode const* node, long flat) {
    std::string path;
    for (; !node->isSchemaRootNode(); node = node->getParentNode()) {
        std::string const name = node->getName();
        if (name[0] == '*' || name.find_first_of("/[") != std::string::npos) return "";
        long const own = flat % node->getOccurrences();
        path = '/' + (name + '[' + std::to_string(own + 1) + ']') + path;
        flat /= node->getOccurrences();
    }
    return path;
}

void checkValue(ZorDocument* document, ZorResultSet& results) {
    ZorSchemaNode* const node = results.getDefinition();
    long const flat = results.results[results.cursor]->flat;
    check(flat >= 0 && flat < node->getTotalOccurrences(), "a result exists");
    check(!node->isDataNode() || document->getDataItem(node, flat, 0), "a result has its cell");
    checkSame(taken(results.getValue()), taken(document->getStringNodeValue(node, flat)),
              "a result reads the value of its cell");
    check(results.wasChanged() == document->wasChanged(node, flat),
          "a result knows whether its cell was changed");
    std::string const path = fullPathOf(node, flat);
    if (path.empty()) return;
    std::unique_ptr<ZorResultSet> const alone(document->select(path.c_str()));
    checkSame(describe(*alone), describe(node, results.getOccurrence(), flat),
              "the full path of a result selects it alone");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static RichStore& store = *new RichStore;
    std::string const path = upToNul(textOfInput(data, size));
    NoLeftovers const nothing;
    IncidentLog log;
    Text const string(path);
    std::unique_ptr<ZorResultSet> const results(
        store.document->select(static_cast<ZorString*>(string)));
    std::string const found = describe(*results);
    checkSame(found, describe(dullHits(store.root, path)), "select finds what a dull walk finds");
    checkSame(describe(*results), found, "results can be read again");
    if (!zor_isString(path.c_str())) {
        std::unique_ptr<ZorResultSet> const again(store.document->select(path.c_str()));
        checkSame(describe(*again), found, "plain text selects what a string selects");
    }
    for (results->rewind(); !results->eof(); results->next()) checkValue(store.document, *results);
    checkSame(log.take(), "", "selecting and reading are silent");
    return 0;
}
