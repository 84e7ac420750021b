// Result sets: a list while they are built, an array with a cursor afterwards.

#include "zor/document.h"

#include <cstdint>
#include <cstring>
#include <memory>

#include "document/flat_occurrence.h"
#include "document/result_records.h"
#include "document/text_access.h"
#include "foundation/string_ref.h"
#include "incident/raise.h"

using zor_internal::appendRecord;
using zor_internal::destroyRecords;
using zor_internal::flatOccurrence;
using zor_internal::placeOf;
using zor_internal::raiseError;
using zor_internal::setText;
using zor_internal::StringRef;

namespace {

ZorResultPointer* recordAt(ZorListNode const* node) {
    return static_cast<ZorResultPointer*>(node->value);
}

// The number of records that are in the array already.
unsigned int finalizedCount(ZorResultSet const* set) {
    if (!set->results) return 0;
    unsigned int count = set->count;
    for (ZorListNode const* node = set->head; node; node = node->next) --count;
    return count;
}

void freeArray(ZorResultSet* set) {
    if (set->results != &set->single) delete[] set->results;
    set->results = nullptr;
}

// Moves the records of a finalized set back into a list, before those added since.
void reopen(ZorResultSet* set) {
    unsigned int const count = finalizedCount(set);
    if (count == 0) return;
    ZorListNode* const first = placeOf(set->results[0]);
    ZorListNode* const last = placeOf(set->results[count - 1]);
    freeArray(set);
    if (set->head)
        zor_listJoin(last, set->head);
    else
        set->tail = last;
    set->head = first;
}

// The result under the cursor; null, with an incident, past the end.
ZorResultPointer const* current(ZorResultSet* set) {
    if (set->eof()) {
        raiseError(nullptr, incidentInvalidState, "Passed end of result set");
        return nullptr;
    }
    if (set->head) set->finalize();
    return set->results[set->cursor];
}

} // namespace

ZorResultPointer::ZorResultPointer(ZorSchemaNode* resultNode, int ownOccurrence, int flatOccurrence)
    : node(resultNode), occurrence(ownOccurrence), flat(flatOccurrence) {}

ZorResultPointer::~ZorResultPointer() = default;

ZorResultSet::ZorResultSet(ZorDocument* resultDocument)
    : document(resultDocument), head(nullptr), tail(nullptr), results(nullptr), count(0), cursor(0),
      single(nullptr) {}

ZorResultSet::~ZorResultSet() {
    ZorListNode* const lastInArray = results ? placeOf(results[finalizedCount(this) - 1]) : nullptr;
    destroyRecords(tail);
    destroyRecords(lastInArray);
    freeArray(this);
}

void ZorResultSet::addResult(long parentFlat, ZorSchemaNode* node, long occurrence) {
    appendRecord(
        this, {node, static_cast<int>(occurrence), flatOccurrence(parentFlat, node, occurrence)});
}

void ZorResultSet::combine(ZorResultSet* other) {
    if (!other || other == this) return;
    std::unique_ptr<ZorResultSet> const source(other);
    reopen(other);
    if (!other->head) return;
    if (head)
        zor_listJoin(tail, other->head);
    else
        head = other->head;
    tail = other->tail;
    count += other->count;
    other->head = nullptr;
    other->tail = nullptr;
    other->count = 0;
}

void ZorResultSet::finalize() {
    if (!head) return;
    if (results) reopen(this);
    results = count == 1 ? &single : new ZorResultPointer*[count];
    ZorResultPointer** at = results;
    for (ZorListNode const* node = head; node; node = node->next) *at++ = recordAt(node);
    // The records keep their places, which the set may come back to.
    head = nullptr;
    tail = nullptr;
}

bool ZorResultSet::eof() const { return cursor >= count; }

void ZorResultSet::next() {
    if (!eof()) ++cursor;
}

void ZorResultSet::rewind() { cursor = 0; }

void ZorResultSet::seek(unsigned int index) { cursor = index; }

unsigned long ZorResultSet::getResultCount() const { return count; }

ZorSchemaNode* ZorResultSet::getDefinition() {
    ZorResultPointer const* const at = current(this);
    return at ? at->node : nullptr;
}

char const* ZorResultSet::getNodeName() {
    ZorResultPointer const* const at = current(this);
    return at ? at->node->getName() : nullptr;
}

ZorDataType* ZorResultSet::getDataType() {
    ZorResultPointer const* const at = current(this);
    return at ? at->node->getDataType() : nullptr;
}

long ZorResultSet::getOccurrence() {
    ZorResultPointer const* const at = current(this);
    return at ? at->occurrence + 1L : 0;
}

ZorString* ZorResultSet::getValue() {
    ZorResultPointer const* const at = current(this);
    return at ? document->getStringNodeValue(at->node, at->flat) : nullptr;
}

int ZorResultSet::setValue(char const* value) {
    ZorResultPointer const* const at = current(this);
    return at ? setText(document, at->node, at->flat, value) : 0;
}

void ZorResultSet::restoreDefault() {
    ZorResultPointer const* const at = current(this);
    if (at) document->restoreDefault(at->node, at->flat);
}

long ZorResultSet::getIntValue(int* isNull) {
    ZorResultPointer const* const at = current(this);
    return at ? document->getIntNodeValue(at->node, at->flat, isNull) : 0;
}

int ZorResultSet::setIntValue(long value) {
    ZorResultPointer const* const at = current(this);
    return at ? document->setIntNodeValue(at->node, at->flat, value) : 0;
}

unsigned long ZorResultSet::getUIntValue(int* isNull) {
    ZorResultPointer const* const at = current(this);
    return at ? document->getUIntNodeValue(at->node, at->flat, isNull) : 0;
}

int ZorResultSet::setUIntValue(unsigned long value) {
    ZorResultPointer const* const at = current(this);
    return at ? document->setUIntNodeValue(at->node, at->flat, value) : 0;
}

double ZorResultSet::getFloatValue(int* isNull) {
    ZorResultPointer const* const at = current(this);
    return at ? document->getFloatNodeValue(at->node, at->flat, isNull) : 0.0;
}

int ZorResultSet::setFloatValue(double value) {
    ZorResultPointer const* const at = current(this);
    return at ? document->setFloatNodeValue(at->node, at->flat, value) : 0;
}

bool ZorResultSet::wasChanged() {
    ZorResultPointer const* const at = current(this);
    return at && document->wasChanged(at->node, at->flat);
}

void ZorResultSet::getValue(char* buffer, int size, int* isNull) {
    StringRef const value(getValue());
    if (isNull) *isNull = !value;
    if (!value || size < 1) return;
    std::strncpy(buffer, value.text(), static_cast<unsigned>(size));
    buffer[size - 1] = '\0';
}

void ZorResultSet::getValue(std::string& out, bool* isNull) {
    StringRef const value(getValue());
    if (isNull) *isNull = !value;
    if (value) out = value.text();
}

void ZorResultSet::getValue(std::string& out) {
    out.clear();
    getValue(out, nullptr);
}
