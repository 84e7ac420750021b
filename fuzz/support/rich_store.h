// A document with everything that a path can meet: repeated branches within repeated branches, the
// same names at several depths, names that begin alike, branches without anything, odd names.

#pragma once

#include "zor/collection.h"

class RichStore {
public:
    RichStore();

    ZorCollection collection;
    ZorDocument* document;
    ZorSchemaNode* root;
};
