// What the XML form cannot carry, and only that, is exempt from the round trip.

#include "fuzz/support/round_trip.h"

#include <expat.h>

#include <cstring>
#include <list>
#include <memory>

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "tests/support/text.h"
#include "zor/collection.h"

namespace {

// Names, defaults and bounds are written unescaped between double quotes, where any white space
// reads as a blank.
bool fitsAttribute(char const* text) { return !std::strpbrk(text, "<&\"\t\n\r"); }

// Options are written unescaped between tags, where a carriage return reads as a line feed.
bool fitsOption(char const* text) {
    return !std::strpbrk(text, "<&\r") && !std::strstr(text, "]]>");
}

bool typeFits(ZorDataType* type) {
    static bool optionsFit;
    if (!fitsAttribute(zor_dataTypeName(type))) return false;
    if (zor_datatypeIsRange(type)) {
        return fitsAttribute(zor_rangeMin(type)) && fitsAttribute(zor_rangeMax(type));
    }
    optionsFit = true;
    zor_choiceEnumerate(type, [](int, char const* text) {
        if (!fitsOption(text)) optionsFit = false;
    });
    return optionsFit;
}

bool typesFit(ZorSchema const* schema) {
    ZorListNode* const types = schema->getDataTypes();
    bool fit = true;
    for (ZorListNode const* node = types; node && fit; node = node->next) {
        fit = typeFits(static_cast<ZorDataType*>(node->value));
    }
    zor_listDelete(types);
    return fit;
}

bool isFloat(ZorDataType const* type) {
    return type->toStringFn == ZorBuiltIn::getDataType("float")->toStringFn;
}

// A float is written with 15 digits. Those of a number next to a bound, or to the largest one that
// there is, may lie beyond it, and do not come back. All other values do.
bool comesBack(ZorDataType* type, std::string const& text) {
    if (zor_dataTypeValidate(type, Text(text))) {
        u_zorItemValue const value = type->fromStringFn(text.c_str());
        std::string const again = taken(type->toStringFn(value));
        type->freeValueFn(value);
        if (again == text) return true;
    }
    check(isFloat(type), "the text of a value is valid and reads as that value");
    return false;
}

bool nodeFits(ZorSchema* schema, ZorSchemaNode* node) {
    if (!fitsAttribute(node->getName())) return false;
    // More occurrences than 16 bits hold wrap; what wraps to below 1 is written as one occurrence.
    if (node->getOccurrences() < 1) return false;
    if (node->isBranchNode()) {
        // A path, by which children name their branch, cannot name these.
        return !node->getFirstChildNode() ||
               (!std::strchr(node->getName(), '/') && std::strcmp(node->getName(), "*") != 0);
    }
    // A type that was declared behind the item hides the built-in type that the item has.
    if (schema->getDataType(node->getDataType()->name) != node->getDataType()) return false;
    ZorString* const defaultText = node->getDefaultValue();
    if (!defaultText) return true;
    std::string const text = taken(defaultText);
    return fitsAttribute(text.c_str()) && comesBack(node->getDataType(), text);
}

bool nodesFit(ZorSchema* schema, ZorSchemaNode* parent) {
    for (ZorSchemaNode* node = parent->getFirstChildNode(); node; node = node->getNextNode()) {
        if (!nodeFits(schema, node) || !nodesFit(schema, node)) return false;
    }
    return true;
}

bool isXmlName(std::string const& name) {
    if (name.find_first_of(" \t\n\r/<>&'\"=") != std::string::npos) return false;
    std::string const text = '<' + name + "/>";
    XML_Parser const parser = XML_ParserCreate(nullptr);
    int const size = static_cast<int>(text.size());
    bool const isName = XML_Parse(parser, text.data(), size, 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return isName;
}

// Values stand in elements that are called like their nodes. What was imported does so already, but
// a document may have been changed otherwise.
bool fitsElements(ZorSchemaNode const* node) {
    for (; !node->isSchemaRootNode(); node = node->getParentNode()) {
        if (!isXmlName(node->getName())) return false;
    }
    return true;
}

bool valueFits(ZorDocument* document, ZorSchemaNode* node, int occurrence) {
    if (!fitsElements(node)) return false;
    ZorString* const value = document->getStringNodeValue(node, occurrence);
    return !value || comesBack(node->getDataType(), taken(value));
}

// REQUIRES: every node of the document has at least one occurrence.
bool valuesFit(ZorDocument* document, ZorSchemaNode* parent) {
    for (ZorSchemaNode* node = parent->getFirstChildNode(); node; node = node->getNextNode()) {
        if (!valuesFit(document, node)) return false;
        for (int i = 0; node->isDataNode() && i < node->getTotalOccurrences(); ++i) {
            if (document->wasChanged(node, i) && !valueFits(document, node, i)) return false;
        }
    }
    return true;
}

// The schema that every collection is born with is not written, nor is any other of its name.
bool isWritten(ZorSchema const* schema) {
    return std::strcmp(schema->getName(), "DefaultSchema") != 0;
}

bool isBornDefault(ZorSchema const* schema) {
    ZorListNode* const types = schema->getDataTypes();
    zor_listDelete(types);
    ZorSchemaNode const* const item = schema->getRootNode()->getFirstChildNode();
    return !types && item && !item->getNextNode() && item->isDataNode() &&
           std::strcmp(item->getName(), "itemValue") == 0 && item->getOccurrences() == 1 &&
           item->getDataType() == ZorBuiltIn::getDataType("string") &&
           taken(item->getDefaultValue()).empty();
}

bool canBeCarried(ZorCollection& collection) {
    std::list<ZorSchema*> schemas;
    collection.getSchemas(schemas);
    for (ZorSchema* const schema : schemas) {
        if (!isWritten(schema) && !isBornDefault(schema)) return false;
        if (!fitsAttribute(schema->getName()) || !typesFit(schema)) return false;
        if (!nodesFit(schema, schema->getRootNode())) return false;
    }
    std::list<ZorDocument*> documents;
    collection.getDocuments(documents);
    for (ZorDocument* const document : documents) {
        if (!fitsAttribute(document->getName())) return false;
        if (!valuesFit(document, document->getRootNode())) return false;
    }
    std::list<ZorCollection*> collections;
    collection.getCollections(collections);
    for (ZorCollection* const inner : collections) {
        if (!fitsAttribute(inner->getName()) || !canBeCarried(*inner)) return false;
    }
    return true;
}

// A name that the collection has for nothing yet.
std::string freeName(ZorCollection& collection) {
    for (int i = 0;; ++i) {
        std::string const name = "fresh" + std::to_string(i);
        if (!collection.getSchema(Text(name)) && !collection.getDocument(Text(name))) return name;
    }
}

} // namespace

void checkRoundTrip(ZorCollection& collection, IncidentLog& log) {
    std::string const text = collection.exportAll();
    checkSame(collection.exportAll(), text, "exporting twice gives the same text");
    checkSame(log.take(), "", "export is silent");

    ZorCollection again(kStoreName);
    again.importXML(text.c_str());
    std::string const incidents = log.take();
    // A carriage return in a value reads as a line feed.
    if (text.find('\r') != std::string::npos || !canBeCarried(collection)) return;
    checkSame(incidents, "", "an export imports in silence");
    checkSame(again.exportAll(), text, "an imported export gives the same export");
}

void checkStillImports(ZorCollection& collection, IncidentLog& log) {
    std::string const name = freeName(collection);
    std::string const text =
        "<phone><schema name='" + name +
        "'><range name='level' baseType='int' minValue='-3' maxValue='3'/>"
        "<branch name='line' occurrences='2'/><item name='level' type='level' parent='line'/>"
        "</schema><document name='" +
        name + "' schema='" + name +
        "'><line occurrence='2'><level>-2</level></line></document></phone>";
    collection.importXML(text.c_str());
    checkSame(log.take(), "", "correct input imports in silence after any other");
    ZorDocument* const document = collection.getDocument(Text(name));
    check(document != nullptr, "correct input makes its document after any other");
    std::unique_ptr<ZorResultSet> const found(document->select("line/level"));
    check(found->getResultCount() == 2, "correct input makes its nodes after any other");
    checkSame(taken(found->getValue()), "(null)", "what is left out has no value");
    found->next();
    checkSame(taken(found->getValue()), "-2", "correct input sets its values after any other");
    collection.deleteSchema(name.c_str());
    check(!collection.getDocument(Text(name)), "a schema takes its documents along");
}
