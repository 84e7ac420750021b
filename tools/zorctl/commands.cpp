#include "commands.h"

#include <cstdio>
#include <list>
#include <memory>

#include "output.h"
#include "string_holder.h"

namespace {

// The results of the path; null after reporting why there are none.
std::unique_ptr<ZorResultSet> selectFrom(Session& session, std::string const& documentName,
                                         std::string const& path) {
    StringHolder const name(documentName);
    ZorDocument* const document = session.collection().getDocument(name.get());
    if (!document) {
        session.fail("document (" + documentName + ") does not exist");
        return nullptr;
    }
    StringHolder const pathText(path);
    std::unique_ptr<ZorResultSet> results(document->select(pathText.get()));
    if (results->eof()) {
        session.fail("path (" + path + ") selects nothing");
        return nullptr;
    }
    return results;
}

// The path of one occurrence, counted from 1 at each node that repeats.
std::string pathOf(ZorSchemaNode const* node, long flat) {
    std::string path;
    for (; !node->isSchemaRootNode(); node = node->getParentNode()) {
        long const count = node->getOccurrences();
        std::string step = node->getName();
        if (count > 1) step.append("[").append(std::to_string(flat % count + 1)).append("]");
        if (!path.empty()) step += '/';
        path.insert(0, step);
        flat /= count;
    }
    return path;
}

void printResult(ZorResultSet& results, bool withPaths) {
    std::string value;
    bool isNull = true;
    results.getValue(value, &isNull);
    if (withPaths) {
        int const flat = results.results[results.cursor]->flat;
        std::string const path = pathOf(results.getDefinition(), flat);
        std::printf("%s%s", path.c_str(), isNull ? "" : " = ");
    }
    std::printf("%s\n", value.c_str());
}

// Whether a collection of the same name reads the text back as the same. Names, defaults and
// options are exported unescaped, so that markup in them, or control characters in a value, make a
// text that nothing can read.
bool readsBack(Session& session, std::string const& xml) {
    StringHolder const name(session.collection().getName());
    ZorCollection again(name.get());
    again.importXML(xml.c_str());
    return again.exportAll() == xml;
}

} // namespace

void checkFiles(Session& session) {
    if (!*session.collection().getName()) return; // no file had a root element
    std::list<ZorSchema*> schemas;
    std::list<ZorDocument*> documents;
    std::list<ZorCollection*> collections;
    session.collection().getSchemas(schemas);
    session.collection().getDocuments(documents);
    session.collection().getCollections(collections);
    std::printf("%s: %zu schemas, %zu documents, %zu collections\n", session.collection().getName(),
                schemas.size() - 1, // "DefaultSchema" is always there
                documents.size(), collections.size());
}

void printValues(Session& session, std::string const& document, std::string const& path,
                 bool withPaths) {
    std::unique_ptr<ZorResultSet> const results = selectFrom(session, document, path);
    if (!results) return;
    for (; !results->eof(); results->next()) {
        if (results->getDefinition()->isDataNode()) printResult(*results, withPaths);
    }
}

void setValues(Session& session, std::string const& document, std::string const& path,
               std::string const& value) {
    std::unique_ptr<ZorResultSet> const results = selectFrom(session, document, path);
    if (!results) return;
    for (; !results->eof(); results->next()) results->setValue(value.c_str());
}

void writeExport(Session& session, std::string const& file) {
    std::string const xml = session.collection().exportAll();
    if (file.empty()) {
        std::printf("%s\n", xml.c_str());
    } else if (!readsBack(session, xml)) {
        session.fail("File: \"" + file + "\" not written: it could not be read back");
    } else if (!writeFile(file, xml + "\n")) {
        session.fail("File: \"" + file + "\" cannot be written");
    }
}

void flushOutput(Session& session) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        session.fail("standard output cannot be written");
    }
}
