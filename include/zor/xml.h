// The XML parse framework: element rules, parse contexts and the parser over expat.
//
// A tree of rules says which elements may stand where, which attributes they take, what becomes of
// their text, and which functions are called at their start and end. While a text is parsed, every
// open element has a context, which gives those functions the attributes, the text, the enclosing
// contexts and a slot for an object of their own.
//
//     auto* volume = new ZorElementParseRules("volume", trimmedCharacterData, nullptr, onVolume);
//     zor_XMLParseRulesAddAttribute(volume, "unit");
//     zor_XMLParseRulesAddInnerRules(settings, volume);
//     // later, in onVolume(ZORParseContext* context):
//     ZorString* unit = zor_XMLContextGetAttribute(context, "unit"); // or null
//     ZorString* text = zor_XMLContextGetCharacterData(context);
//
// While the last incident of the parser is an error (severity 3 or more), no callback runs: start
// tags open no context, texts are dropped, end tags still close contexts. A later warning lifts
// that. So an end callback may never come: what a start callback makes must be owned by somebody
// else than the context's user data.
//
// Threads: a parser, its contexts and its rules belong to one thread at a time; rules are not
// changed or released while a parser uses them. Unless said otherwise, no pointer may be null.

#pragma once

#include "zor/containers.h"
#include "zor/export.h"
#include "zor/incident.h"
#include "zor/string.h"

class ZorCollection;
class ZorXmlParser;
class ZORParseContext;
struct XML_ParserStruct; // expat's parser

// What becomes of the text inside an element. Any other value acts as rawCharacterData.
enum characterDataUsage : int {
    ignoreCharacterData = 0,
    trimmedCharacterData = 1, // collected, without white space around it
    rawCharacterData = 2,     // collected as it stands
};

using ZorElementCallback = void (*)(ZORParseContext* context);

// The rule of one kind of element. The count of references starts at 0 and grows with every rule it
// is added to; the rule is destroyed when the last one is released. A rule that was never added is
// deleted by its maker.
class ZOR_API ZorElementParseRules {
public:
    // A rule for elements called `name` (a ZorString or plain text) that accepts no attribute and
    // no inner element yet. `start` and `end` may be null. Adds a reference to a ZorString name.
    ZorElementParseRules(void const* name, characterDataUsage usage, ZorElementCallback start,
                         ZorElementCallback end);
    ZorElementParseRules(ZorElementParseRules const&) = delete;
    ZorElementParseRules& operator=(ZorElementParseRules const&) = delete;
    // Releases the inner rules and the user data, too.
    virtual ~ZorElementParseRules();

    ZorString* elementName;
    ZorListNode* innerRules; // of ZorElementParseRules*, first match wins
    ZorListNode* attributes; // of ZorString*, one reference each
    characterDataUsage characterData;
    ZorElementCallback startElement; // or null
    ZorElementCallback endElement;   // or null
    int refCount;
    void* elementUserData;
    void (*freeElementUserData)(void*); // or null
};

// Drops one reference; at exactly 0 the rule is destroyed.
// REQUIRES: `rules` is not null.
ZOR_API void zor_XMLParseRulesRemoveRef(ZorElementParseRules* rules);

// Accepts an attribute of that name (a ZorString or plain text). Adds a reference to a ZorString.
ZOR_API void zor_XMLParseRulesAddAttribute(ZorElementParseRules* rules, void const* name);

// Allows `inner` inside `outer`, behind the rules already allowed. What closes a cycle is not
// counted, so that the cycle does not keep itself alive: adds a reference to `inner` unless `outer`
// can be reached from it.
// REQUIRES: the only cycles are rules inside themselves. (A longer cycle is found without end, but
// is destroyed rightly only if nothing outside it refers to more than one of its rules.)
ZOR_API void zor_XMLParseRulesAddInnerRules(ZorElementParseRules* outer,
                                            ZorElementParseRules* inner);

// Sets the rule's own data and the function that releases it with the rule (or null). Earlier data
// is not released.
ZOR_API void zor_XMLParseRulesSetElementUserData(ZorElementParseRules* rules, void* data,
                                                 void (*freeData)(void*));
ZOR_API void* zor_XMLParseRulesGetElementUserData(ZorElementParseRules const* rules);

// One open element.
class ZOR_API ZORParseContext {
public:
    // The root context of a parser, with a rule "root-node" of its own.
    explicit ZORParseContext(ZorXmlParser* parser);
    // The context of an element that opens inside `outer`. `attributes` are name, value, name,
    // value ..., null. An element or attribute that the rules do not allow is reported by warnings
    // (type 5) that begin with "element not recognised in this context <NAME>" or "attribute not
    // valid in this context (NAME)"; an element that is not allowed has no rule, and nothing in it
    // is looked at. An attribute longer than 65534 characters, and later a text, is an error (type
    // 1), "text is too long in element <NAME>", and its element has no rule.
    ZORParseContext(ZORParseContext* outer, char const* name, char const** attributes);
    ZORParseContext(ZORParseContext const&) = delete;
    ZORParseContext& operator=(ZORParseContext const&) = delete;
    virtual ~ZORParseContext();

    ZORParseContext* outerContext;    // null in the root context
    ZorElementParseRules* parseRules; // null when the element was not recognised
    ZorMapEntry** attributes;         // name to ZorString*, one reference each; null when none
    ZorString* characterData;         // or null
    ZorXmlParser* parser;
    void* userData; // free for the callbacks; never released here
};

// The attribute's value, or null when it was not given. Borrowed as long as the context lives.
ZOR_API ZorString* zor_XMLContextGetAttribute(ZORParseContext const* context, void const* name);

// The text collected so far; complete, and not null, in the end callback only. Borrowed as long as
// the context lives.
ZOR_API ZorString* zor_XMLContextGetCharacterData(ZORParseContext const* context);

// The object that callbacks keep with the context, null at first. Borrowed: never released here.
ZOR_API void zor_XMLContextSetUserData(ZORParseContext* context, void* data);
ZOR_API void* zor_XMLContextGetUserData(ZORParseContext const* context);
// Null when the element was not recognised. Borrowed.
ZOR_API ZorElementParseRules* zor_XMLContextGetParseRules(ZORParseContext const* context);
// The context of the enclosing element; null for the root context. Borrowed.
ZOR_API ZORParseContext* zor_XMLContextGetOuterContext(ZORParseContext const* context);

// An expat parser that feeds the rules of one collection.
class ZOR_API ZorXmlParser {
public:
    // A parser with the definition-language rules of `collection`. `incidents` may be null and is
    // not owned.
    // REQUIRES: `collection` outlives every parse; what an input made or named (documents, their
    // schemas) is not deleted before `reset` or the end of the parser.
    ZorXmlParser(ZorCollection* collection, ZorIncidentContext* incidents);
    ZorXmlParser(ZorXmlParser const&) = delete;
    ZorXmlParser& operator=(ZorXmlParser const&) = delete;
    virtual ~ZorXmlParser();

    // Parses one piece of input; `length` -1 means up to the NUL, a lower one none, and `isFinal`
    // non-zero marks the last piece. Every incident on the parser's context carries "zor_XMLParse:
    // line L, column C " (lines count from 1, columns from 0). What expat refuses is an error of
    // type 1 in expat's words; until `reset` the parser then refuses every further piece, too. So
    // are "defaults of attributes are not accepted" and "undefined entity", for one that may be
    // declared in a part that is not read. The result is read from the incident context; a parser
    // without one forgets at the end of each piece that the last incident was an error. What a
    // callback throws, and std::bad_alloc, reaches the caller, and the input is over.
    void parse(char const* text, int length, int isFinal);

    // Makes the parser ready for a new input: releases what an unfinished one left open, and sets
    // the last severity of the incident context back to 0. The rules stay those of the collection
    // given at construction; the argument is not used, and may be null.
    void reset(ZorCollection* collection);

    XML_ParserStruct* expatParser;
    ZORParseContext* currentContext; // the innermost open element; expat's user data is its address
    ZORParseContext* rootContext;
    ZorIncidentContext* incidentContext; // or null; not owned
};
