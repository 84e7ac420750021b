// Values as host numbers. The three kinds differ in the conversions they use and in the name their
// incidents begin with.

#include "zor/document.h"

#include "document/cell_of.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"

using zor_internal::cellOf;
using zor_internal::isData;
using zor_internal::LockHolder;
using zor_internal::raiseError;

namespace {

void raiseUnsupported() { raiseError(nullptr, incidentNotFound, "Unsupported Type Conversion"); }

// Whether there was a value, which is then in *external.
bool readNumber(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                ZorExternalDataType kind, u_zorItemValue* external, int* isNull) {
    if (isNull) *isNull = 1;
    LockHolder const holder(document->lock);
    if (!isData(node)) return false;
    ZorGetExternalFn const getExternal = node->dataType->extFuncs[kind].getExternal;
    if (!getExternal) {
        raiseUnsupported();
        return false;
    }
    ZorValueNode const* const cell = cellOf(document, node, occurrence);
    if (!cell || (cell->flags & ZorValueNode::noValue)) return false;
    getExternal(cell->value, external);
    if (isNull) *isNull = 0;
    return true;
}

int writeNumber(ZorDocument* document, ZorSchemaNode* node, long occurrence,
                ZorExternalDataType kind, u_zorItemValue external, char const* operation) {
    LockHolder const holder(document->lock);
    if (!isData(node)) {
        raiseError(nullptr, incidentInvalidArgument, operation, ": node is not a data node");
        return 0;
    }
    ZorDataType const* const type = node->dataType;
    ZorExtTypeFuncs const& functions = type->extFuncs[kind];
    if (!functions.toInternal || !functions.setInternal) {
        raiseUnsupported();
        return 0;
    }
    if (!functions.validate || !functions.validate(type->userData, external)) {
        raiseError(nullptr, incidentInvalidArgument, operation, ": value is not valid");
        return 0;
    }
    ZorValueNode* const cell = cellOf(document, node, occurrence);
    if (!cell) {
        raiseError(nullptr, incidentInvalidArgument, operation, ": occurrence is out of range");
        return 0;
    }
    if (cell->flags & ZorValueNode::noValue)
        cell->value = functions.toInternal(external);
    else
        functions.setInternal(&cell->value, external);
    cell->flags = ZorValueNode::changed;
    return 1;
}

} // namespace

long ZorDocument::getIntNodeValue(ZorSchemaNode* node, long occurrence, int* isNull) {
    u_zorItemValue external;
    return readNumber(this, node, occurrence, zorExtLong, &external, isNull) ? external.intValue
                                                                             : 0;
}

unsigned long ZorDocument::getUIntNodeValue(ZorSchemaNode* node, long occurrence, int* isNull) {
    u_zorItemValue external;
    return readNumber(this, node, occurrence, zorExtULong, &external, isNull) ? external.uintValue
                                                                              : 0;
}

double ZorDocument::getFloatNodeValue(ZorSchemaNode* node, long occurrence, int* isNull) {
    double number = 0;
    u_zorItemValue external;
    external.floatValue = &number;
    readNumber(this, node, occurrence, zorExtDouble, &external, isNull);
    return number;
}

int ZorDocument::setIntNodeValue(ZorSchemaNode* node, long occurrence, long value) {
    u_zorItemValue external;
    external.intValue = value;
    return writeNumber(this, node, occurrence, zorExtLong, external, "setIntNodeValue");
}

int ZorDocument::setUIntNodeValue(ZorSchemaNode* node, long occurrence, unsigned long value) {
    u_zorItemValue external;
    external.uintValue = value;
    return writeNumber(this, node, occurrence, zorExtULong, external, "setUIntNodeValue");
}

int ZorDocument::setFloatNodeValue(ZorSchemaNode* node, long occurrence, double value) {
    u_zorItemValue external;
    external.floatValue = &value;
    return writeNumber(this, node, occurrence, zorExtDouble, external, "setFloatNodeValue");
}
