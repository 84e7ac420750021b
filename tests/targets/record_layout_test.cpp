// Where the fields of the public and of the pending records lie.
//
// Each record has a table: its fields in order, the type of each, and its offset where pointers and
// longs have 4 bytes, as on the device. Every machine checks the order, the types and that nothing
// but natural alignment lies between two fields; machines with 4-byte words also check the numbers.
// No field is a 64-bit number, the only kind that i386 aligns differently.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "collection/import_rule_info.h"
#include "collection/node_info.h"
#include "collection/range_info.h"
#include "tests/support/text.h"
#include "types/range_params.h"
#include "zor/zor.h"

// Records with a virtual destructor are no standard layout, for which alone the language promises
// offsetof; both compilers know where their fields are.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

struct Field {
    std::size_t offset; // as compiled
    std::size_t size;
    std::size_t alignment;
    bool isOfItsType;
    std::size_t offsetOf4ByteWords;
};

#define FIELD(record, member, type, offsetOf4ByteWords)                                            \
    Field {                                                                                        \
        offsetof(record, member), sizeof(type), alignof(type),                                     \
            std::is_same_v<decltype(record::member), type>, (offsetOf4ByteWords)                   \
    }

constexpr bool kWordsOf4Bytes = sizeof(void*) == 4 && sizeof(long) == 4;

// What stands before the first field, when it is not a base class.
constexpr std::size_t kNothing = 0;
constexpr std::size_t kTablePointer = sizeof(void*);

// What the platform and the standard library bring, of whatever size.
constexpr std::size_t kLock = sizeof(Semaphore);
constexpr std::size_t kText = sizeof(std::string);
constexpr std::size_t kArray = sizeof(std::vector<ZorXmlParser*>);

constexpr std::size_t aligned(std::size_t offset, std::size_t alignment) {
    return (offset + alignment - 1) / alignment * alignment;
}

constexpr int kNone = -1;

// The index of the first field that is not where it should be; the number of fields when it is the
// size of the record that is wrong.
template <int N>
constexpr int firstWrong(std::size_t before, Field const (&fields)[N], std::size_t size,
                         std::size_t sizeOf4ByteWords) {
    std::size_t end = before;
    std::size_t alignment = before == kNothing ? 1 : alignof(void*);
    for (int i = 0; i < N; ++i) {
        Field const& field = fields[i];
        if (!field.isOfItsType || field.offset != aligned(end, field.alignment)) return i;
        if (kWordsOf4Bytes && field.offset != field.offsetOf4ByteWords) return i;
        if (alignment < field.alignment) alignment = field.alignment;
        end = field.offset + field.size;
    }
    if (size != aligned(end, alignment)) return N;
    return kWordsOf4Bytes && size != sizeOf4ByteWords ? N : kNone;
}

// Compilers name the index when they report the failed assertion.
template <int Index>
struct WrongField {
    static_assert(Index == kNone, "the field of this index is not where it should be");
    static constexpr bool none = true;
};

#define FIELDS_OF(record, before, fields, sizeOf4ByteWords)                                        \
    static_assert(                                                                                 \
        WrongField<firstWrong((before), (fields), sizeof(record), (sizeOf4ByteWords))>::none)

using Callback = void (*)(ZORParseContext*);
using Release = void (*)(void*);

static_assert(sizeof(severity) == 4 && sizeof(characterDataUsage) == 4);
static_assert(sizeof(ZorSchemaNode::e_nodeType) == 4 && sizeof(ZorExternalDataType) == 4);
static_assert(sizeof(u_zorItemValue) == sizeof(void*) && sizeof(long) == sizeof(void*));
static_assert(!kWordsOf4Bytes || sizeof(u_zorItemValue) == 4);

// Foundation.

constexpr Field kString[] = {
    FIELD(ZorString, marker, std::int8_t, 0),      FIELD(ZorString, localBuffer, char[33], 1),
    FIELD(ZorString, length, std::uint16_t, 34),   FIELD(ZorString, refCount, std::uint16_t, 36),
    FIELD(ZorString, capacity, std::uint16_t, 38), FIELD(ZorString, text, char*, 40),
};
FIELDS_OF(ZorString, kNothing, kString, 44);

constexpr Field kListNode[] = {
    FIELD(ZorListNode, value, void*, 0),
    FIELD(ZorListNode, next, ZorListNode*, 4),
    FIELD(ZorListNode, prev, ZorListNode*, 8),
};
FIELDS_OF(ZorListNode, kNothing, kListNode, 12);

constexpr Field kMapEntry[] = {
    FIELD(ZorMapEntry, key, ZorString*, 0),
    FIELD(ZorMapEntry, value, void*, 4),
    FIELD(ZorMapEntry, next, ZorMapEntry*, 8),
};
FIELDS_OF(ZorMapEntry, kNothing, kMapEntry, 12);

static_assert(sizeof(ZorDataWriter) == kTablePointer);

constexpr Field kStringWriter[] = {
    FIELD(ZorStringWriter, begin, char*, 4),
    FIELD(ZorStringWriter, end, char*, 8),
    FIELD(ZorStringWriter, capacity, std::int32_t, 12),
    FIELD(ZorStringWriter, used, std::int32_t, 16),
    FIELD(ZorStringWriter, localBuffer, char[1024], 20),
};
FIELDS_OF(ZorStringWriter, sizeof(ZorDataWriter), kStringWriter, 1044);

// Incidents.

constexpr Field kIncidentContext[] = {
    FIELD(ZorIncidentContext, label, std::string, 4),
    FIELD(ZorIncidentContext, render, ZorIncidentRender, 4 + kText),
    FIELD(ZorIncidentContext, renderData, void*, 8 + kText),
    FIELD(ZorIncidentContext, top, ZorIncidentContext*, 12 + kText),
    FIELD(ZorIncidentContext, outer, ZorIncidentContext*, 16 + kText),
    FIELD(ZorIncidentContext, inner, ZorIncidentContext*, 20 + kText),
    FIELD(ZorIncidentContext, maxIncidentSeverity, severity, 24 + kText),
};
FIELDS_OF(ZorIncidentContext, kTablePointer, kIncidentContext, 28 + kText);

// XML.

constexpr Field kElementParseRules[] = {
    FIELD(ZorElementParseRules, elementName, ZorString*, 4),
    FIELD(ZorElementParseRules, innerRules, ZorListNode*, 8),
    FIELD(ZorElementParseRules, attributes, ZorListNode*, 12),
    FIELD(ZorElementParseRules, characterData, characterDataUsage, 16),
    FIELD(ZorElementParseRules, startElement, Callback, 20),
    FIELD(ZorElementParseRules, endElement, Callback, 24),
    FIELD(ZorElementParseRules, refCount, std::int32_t, 28),
    FIELD(ZorElementParseRules, elementUserData, void*, 32),
    FIELD(ZorElementParseRules, freeElementUserData, Release, 36),
};
FIELDS_OF(ZorElementParseRules, kTablePointer, kElementParseRules, 40);

constexpr Field kParseContext[] = {
    FIELD(ZORParseContext, outerContext, ZORParseContext*, 4),
    FIELD(ZORParseContext, parseRules, ZorElementParseRules*, 8),
    FIELD(ZORParseContext, attributes, ZorMapEntry**, 12),
    FIELD(ZORParseContext, characterData, ZorString*, 16),
    FIELD(ZORParseContext, parser, ZorXmlParser*, 20),
    FIELD(ZORParseContext, userData, void*, 24),
};
FIELDS_OF(ZORParseContext, kTablePointer, kParseContext, 28);

constexpr Field kXmlParser[] = {
    FIELD(ZorXmlParser, expatParser, XML_ParserStruct*, 4),
    FIELD(ZorXmlParser, currentContext, ZORParseContext*, 8),
    FIELD(ZorXmlParser, rootContext, ZORParseContext*, 12),
    FIELD(ZorXmlParser, incidentContext, ZorIncidentContext*, 16),
};
FIELDS_OF(ZorXmlParser, kTablePointer, kXmlParser, 20);

// Types.

constexpr Field kExtTypeFuncs[] = {
    FIELD(ZorExtTypeFuncs, toInternal, u_zorItemValue (*)(u_zorItemValue), 4),
    FIELD(ZorExtTypeFuncs, setInternal, void (*)(u_zorItemValue*, u_zorItemValue), 8),
    FIELD(ZorExtTypeFuncs, getExternal, void (*)(u_zorItemValue, u_zorItemValue*), 12),
    FIELD(ZorExtTypeFuncs, validate, int (*)(void*, u_zorItemValue), 16),
    FIELD(ZorExtTypeFuncs, compare, int (*)(void*, u_zorItemValue, u_zorItemValue), 20),
};
FIELDS_OF(ZorExtTypeFuncs, kTablePointer, kExtTypeFuncs, 24);

constexpr Field kDataType[] = {
    FIELD(ZorDataType, name, ZorString*, 4),
    FIELD(ZorDataType, defaultValue, u_zorItemValue, 8),
    FIELD(ZorDataType, validateFn, int (*)(void*, char const*), 12),
    FIELD(ZorDataType, compareFn, int (*)(void*, char const*, char const*), 16),
    FIELD(ZorDataType, userData, void*, 20),
    FIELD(ZorDataType, freeUserDataFn, void (*)(void*), 24),
    FIELD(ZorDataType, fromStringFn, u_zorItemValue (*)(char const*), 28),
    FIELD(ZorDataType, copyValueFn, u_zorItemValue (*)(u_zorItemValue), 32),
    FIELD(ZorDataType, freeValueFn, void (*)(u_zorItemValue), 36),
    FIELD(ZorDataType, setFromStringFn, void (*)(u_zorItemValue*, char const*), 40),
    FIELD(ZorDataType, toStringFn, ZorString* (*)(u_zorItemValue), 44),
    FIELD(ZorDataType, xmlExportFn, void (*)(ZorDataWriter*, ZorString*, void*), 48),
    FIELD(ZorDataType, extFuncs, ZorExtTypeFuncs[3], 52),
    FIELD(ZorDataType, flags, std::uint8_t, 124),
    FIELD(ZorDataType, cloneUserDataFn, void* (*)(void*), 128),
};
FIELDS_OF(ZorDataType, kTablePointer, kDataType, 132);
static_assert(ZorDataType::noDefault == 1 << 0);
static_assert(ZorDataType::isRange == 1 << 1);
static_assert(ZorDataType::isChoice == 1 << 2);

constexpr Field kRangeParams[] = {
    FIELD(RangeParams, baseType, ZorDataType*, 4),
    FIELD(RangeParams, minValue, ZorString*, 8),
    FIELD(RangeParams, maxValue, ZorString*, 12),
};
FIELDS_OF(RangeParams, kTablePointer, kRangeParams, 16);

constexpr Field kDataTypeCollection[] = {
    FIELD(ZorDataTypeCollection, typesSem, Semaphore, 4),
    FIELD(ZorDataTypeCollection, types, ZorMapEntry**, 4 + kLock),
};
FIELDS_OF(ZorDataTypeCollection, kTablePointer, kDataTypeCollection, 8 + kLock);

// Schemas.

constexpr Field kSchemaNode[] = {
    FIELD(ZorSchemaNode, type, ZorSchemaNode::e_nodeType, 4),
    FIELD(ZorSchemaNode, name, ZorString*, 8),
    FIELD(ZorSchemaNode, next, ZorSchemaNode*, 12),
    FIELD(ZorSchemaNode, previous, ZorSchemaNode*, 16),
    FIELD(ZorSchemaNode, sortedChildren, ZorSchemaNode**, 20),
    FIELD(ZorSchemaNode, documentCount, std::int16_t, 24),
    FIELD(ZorSchemaNode, firstChild, ZorSchemaNode*, 28),
    FIELD(ZorSchemaNode, lastChild, ZorSchemaNode*, 32),
    FIELD(ZorSchemaNode, childCount, std::int16_t, 36),
    FIELD(ZorSchemaNode, parent, ZorSchemaNode*, 40),
    FIELD(ZorSchemaNode, occurrences, std::int16_t, 44),
    FIELD(ZorSchemaNode, totalOccurrences, std::int32_t, 48),
    FIELD(ZorSchemaNode, dataType, ZorDataType*, 52),
    FIELD(ZorSchemaNode, defaultValue, u_zorItemValue, 56),
    FIELD(ZorSchemaNode, valueIndex, std::int32_t, 60),
    FIELD(ZorSchemaNode, flags, std::uint8_t, 64),
};
FIELDS_OF(ZorSchemaNode, kTablePointer, kSchemaNode, 68);
static_assert(ZorSchemaNode::noDefault == 1 << 0 && ZorSchemaNode::sharedDefault == 1 << 1);

constexpr Field kValueNode[] = {
    FIELD(ZorValueNode, value, u_zorItemValue, 0),
    FIELD(ZorValueNode, flags, std::uint8_t, 4),
};
FIELDS_OF(ZorValueNode, kNothing, kValueNode, 8);
static_assert(ZorValueNode::noValue == 1 << 0);
static_assert(ZorValueNode::changed == 1 << 1);

constexpr Field kSchema[] = {
    FIELD(ZorSchema, rootNode, ZorSchemaNode*, 8 + kLock),
    FIELD(ZorSchema, collection, ZorCollection*, 12 + kLock),
    FIELD(ZorSchema, lock, Semaphore, 16 + kLock),
};
FIELDS_OF(ZorSchema, sizeof(ZorDataTypeCollection), kSchema, 16 + 2 * kLock);

// Documents.

constexpr Field kDocument[] = {
    FIELD(ZorDocument, values, ZorValueNode*, 4),
    FIELD(ZorDocument, name, ZorString*, 8),
    FIELD(ZorDocument, rootNode, ZorSchemaNode*, 12),
    FIELD(ZorDocument, lock, Semaphore, 16),
};
FIELDS_OF(ZorDocument, kTablePointer, kDocument, 16 + kLock);

constexpr Field kPathStep[] = {
    FIELD(XPathStep, descendant, std::int32_t, 0),
    FIELD(XPathStep, name, ZorString*, 4),
    FIELD(XPathStep, occurrence, std::int32_t, 8),
};
FIELDS_OF(XPathStep, kNothing, kPathStep, 12);

constexpr Field kResultPointer[] = {
    FIELD(ZorResultPointer, node, ZorSchemaNode*, 4),
    FIELD(ZorResultPointer, occurrence, std::int32_t, 8),
    FIELD(ZorResultPointer, flat, std::int32_t, 12),
};
FIELDS_OF(ZorResultPointer, kTablePointer, kResultPointer, 16);

constexpr Field kResultSet[] = {
    FIELD(ZorResultSet, document, ZorDocument*, 4),
    FIELD(ZorResultSet, head, ZorListNode*, 8),
    FIELD(ZorResultSet, tail, ZorListNode*, 12),
    FIELD(ZorResultSet, results, ZorResultPointer**, 16),
    FIELD(ZorResultSet, count, std::uint32_t, 20),
    FIELD(ZorResultSet, cursor, std::uint32_t, 24),
    FIELD(ZorResultSet, single, ZorResultPointer*, 28),
};
FIELDS_OF(ZorResultSet, kTablePointer, kResultSet, 32);

// Collections.

constexpr Field kCollection[] = {
    FIELD(ZorCollection, lock, Semaphore, 8 + kLock),
    FIELD(ZorCollection, dictionary, ZorDictionary*, 8 + 2 * kLock),
    FIELD(ZorCollection, defaultSchema, ZorSchema*, 12 + 2 * kLock),
    FIELD(ZorCollection, schemas, ZorMapEntry**, 16 + 2 * kLock),
    FIELD(ZorCollection, documents, ZorMapEntry**, 20 + 2 * kLock),
    FIELD(ZorCollection, collections, ZorMapEntry**, 24 + 2 * kLock),
    FIELD(ZorCollection, name, ZorString*, 28 + 2 * kLock),
    FIELD(ZorCollection, parsers, std::vector<ZorXmlParser*>, 32 + 2 * kLock),
    FIELD(ZorCollection, parseDepth, std::int32_t, 32 + 2 * kLock + kArray),
};
FIELDS_OF(ZorCollection, sizeof(ZorDataTypeCollection), kCollection, 36 + 2 * kLock + kArray);

constexpr Field kNodeInfo[] = {
    FIELD(NodeInfo, parent, ZorSchemaNode*, 4),     FIELD(NodeInfo, name, ZorString*, 8),
    FIELD(NodeInfo, occurrences, std::int16_t, 12), FIELD(NodeInfo, type, ZorDataType*, 16),
    FIELD(NodeInfo, defaultValue, ZorString*, 20),
};
FIELDS_OF(NodeInfo, kTablePointer, kNodeInfo, 24);

constexpr Field kRangeInfo[] = {
    FIELD(RangeInfo, name, ZorString*, 4),
    FIELD(RangeInfo, baseType, ZorDataType*, 8),
    FIELD(RangeInfo, minimum, ZorString*, 12),
    FIELD(RangeInfo, maximum, ZorString*, 16),
};
FIELDS_OF(RangeInfo, kTablePointer, kRangeInfo, 20);

constexpr Field kImportRuleInfo[] = {
    FIELD(ImportRuleInfo, definitionNode, ZorSchemaNode*, 4),
    FIELD(ImportRuleInfo, currentParentIndex, std::uint32_t, 8),
    FIELD(ImportRuleInfo, occurrenceInParent, std::uint32_t, 12),
    FIELD(ImportRuleInfo, valueIndex, std::uint32_t, 16),
};
FIELDS_OF(ImportRuleInfo, kTablePointer, kImportRuleInfo, 20);

template <typename T>
T readAt(void const* record, std::size_t offset) {
    T value;
    std::memcpy(&value, static_cast<char const*>(record) + offset, sizeof value);
    return value;
}

// The place of a virtual operation in its class's table. The lowest bit of what a pointer to a
// member begins with may only say that the operation is virtual.
template <typename Member>
std::size_t slotOf(Member member) {
    return (readAt<std::uintptr_t>(&member, 0) & ~std::uintptr_t{1}) / sizeof(void*);
}

} // namespace

// A ZorString is told from plain text by its first byte, which no other field can change.
TEST(RecordLayout, AStringBeginsWithItsMarker) {
    Text const made("text");
    for (ZorString* const string : {static_cast<ZorString*>(made), &ZorString::stdZorStrings[0]}) {
        EXPECT_EQ(readAt<unsigned char>(string, 0), 0xFF);
        EXPECT_EQ(zor_isString(string), 1);
    }
    unsigned char bytes[sizeof(ZorString)] = {0xFF};
    EXPECT_EQ(zor_isString(bytes), 1);
    bytes[0] = 0xFE;
    EXPECT_EQ(zor_isString(bytes), 0);
}

// A document's cells lie one size apart, each a word with a byte of flags behind it.
TEST(RecordLayout, ACellIsAWordAndAByteOfFlags) {
    ZorCollection store("store");
    ZorSchema* const schema = store.makeSchema("schema");
    ZorSchemaNode* const node = schema->makeDataNode(schema->getRootNode(), "number", 3,
                                                     schema->getDataType("int"), nullptr);
    ZorDocument* const document = store.makeDocument("schema", "document");
    document->setIntNodeValue(node, 1, -2);
    char const* const cells = reinterpret_cast<char const*>(document->values);
    std::size_t const stride = 2 * sizeof(long);
    EXPECT_EQ(reinterpret_cast<char const*>(document->getDataItem(node, 1, 0)), cells + stride);
    EXPECT_EQ(reinterpret_cast<char const*>(document->getDataItem(node, 2, 0)), cells + 2 * stride);
    EXPECT_EQ(readAt<long>(cells, stride), -2);
    EXPECT_EQ(readAt<unsigned char>(cells, stride + sizeof(long)), 2);     // changed
    EXPECT_EQ(readAt<unsigned char>(cells, 2 * stride + sizeof(long)), 1); // no value
}

// An object with virtual operations begins with the pointer to its class's table.
TEST(RecordLayout, ObjectsBeginWithTheTableOfTheirClass) {
    ZorCollection one("one");
    ZorCollection other("other");
    ZorDataTypeCollection base;
    EXPECT_EQ(readAt<void*>(&one, 0), readAt<void*>(&other, 0));
    EXPECT_NE(readAt<void*>(&one, 0), readAt<void*>(&base, 0));
    EXPECT_NE(readAt<void*>(&one, 0), readAt<void*>(one.defaultSchema, 0));
}

// The order of virtual operations, which hosts compiled earlier rely on. A virtual destructor takes
// two places: to destroy, and to destroy and free.
TEST(RecordLayout, VirtualOperationsStandInTheirOrder) {
    EXPECT_EQ(slotOf(&ZorDataWriter::writeData), 0U);
    EXPECT_EQ(slotOf(&ZorDataTypeCollection::addDataType), 2U);
    EXPECT_EQ(slotOf(&ZorDataTypeCollection::getDataType), 3U);
    EXPECT_EQ(slotOf(&ZorSchema::addDataType), 2U);
    EXPECT_EQ(slotOf(&ZorSchema::getDataType), 3U);
    EXPECT_EQ(slotOf(&ZorDictionary::getSchemaName), 0U);
    EXPECT_EQ(slotOf(&ZorDictionary::getSchemaDefinition), 1U);
}
