#include "commands.h"

#include <cstdio>
#include <list>
#include <memory>

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
        std::printf(isNull ? "%s\n" : "%s = %s\n", path.c_str(), value.c_str());
    } else {
        std::printf("%s\n", value.c_str());
    }
}

bool writeAll(std::FILE* out, std::string const& text) {
    return std::fwrite(text.data(), 1, text.size(), out) == text.size() && std::fflush(out) == 0;
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
    std::string const text = session.collection().exportAll() + "\n";
    if (file.empty()) {
        if (!writeAll(stdout, text)) session.fail("standard output cannot be written");
        return;
    }
    // Through a new file, so that what was there before is lost only when the rest is on disk.
    std::string const fresh = file + ".new";
    std::FILE* const out = std::fopen(fresh.c_str(), "w");
    bool const written = out && writeAll(out, text);
    bool const closed = out && std::fclose(out) == 0;
    if (!written || !closed || std::rename(fresh.c_str(), file.c_str()) != 0) {
        std::remove(fresh.c_str());
        session.fail("File: \"" + file + "\" cannot be written");
    }
}
