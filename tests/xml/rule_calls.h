// Rules whose callbacks note each call, and a parser that follows them.
//
//     RuleParser parser;
//     zor_XMLParseRulesAddInnerRules(parser.top(), noted("volume", trimmedCharacterData));
//     EXPECT_EQ(parser.feed("<top><volume> 7 </volume></top>"), "");
//     EXPECT_EQ(parser.calls(), "<top><volume>7</volume></top>");

#pragma once

#include <string>

#include "tests/support/incidents.h"
#include "zor/collection.h"
#include "zor/xml.h"

// What the callbacks of noted rules did since the last call of `takeRuleCalls`.
inline std::string& ruleCalls() {
    static std::string calls;
    return calls;
}

inline std::string takeRuleCalls() {
    std::string taken;
    taken.swap(ruleCalls());
    return taken;
}

inline std::string ruleName(ZORParseContext const* context) {
    return zor_XMLContextGetParseRules(context)->elementName->text;
}

inline void noteStart(ZORParseContext* context) { ruleCalls() += "<" + ruleName(context) + ">"; }

// Notes the text, too, which is there in every end callback.
inline void noteEnd(ZORParseContext* context) {
    ruleCalls() += std::string(zor_stringValue(zor_XMLContextGetCharacterData(context))) + "</" +
                   ruleName(context) + ">";
}

inline ZorElementParseRules* noted(char const* name,
                                   characterDataUsage usage = ignoreCharacterData) {
    return new ZorElementParseRules(name, usage, noteStart, noteEnd);
}

// A rule whose start raises an incident of that severity on the parser's context.
template <int Severity>
ZorElementParseRules* raising(char const* name) {
    return new ZorElementParseRules(
        name, rawCharacterData,
        [](ZORParseContext* context) {
            noteStart(context);
            zor_raiseIncident(context->parser->incidentContext, static_cast<severity>(Severity),
                              incidentInvalidArgument, 2, "raised in ", ruleName(context).c_str());
        },
        noteEnd);
}

// A parser that takes an element <top> beside the root element of its collection "phone". The rule
// `top` is the test's to fill. Its incident context has no label.
class RuleParser {
public:
    RuleParser() : incidents("", nullptr, nullptr), parser(&collection, &incidents) {
        topRule = noted("top");
        zor_XMLParseRulesAddInnerRules(parser.rootContext->parseRules, topRule);
    }
    RuleParser(RuleParser const&) = delete;
    RuleParser& operator=(RuleParser const&) = delete;
    ~RuleParser() { takeRuleCalls(); }

    ZorElementParseRules* top() const { return topRule; }

    // Adds the rule to <top> and returns it.
    ZorElementParseRules* allow(ZorElementParseRules* rule) const {
        zor_XMLParseRulesAddInnerRules(topRule, rule);
        return rule;
    }

    // Parses one piece of input; the incidents it raised.
    std::string feed(std::string const& piece, bool isFinal = false) {
        parser.parse(piece.data(), static_cast<int>(piece.size()), isFinal);
        return log.take();
    }

    std::string calls() const { return takeRuleCalls(); }

    // How many elements are open, as the parser sees it.
    int depth() const {
        int count = 0;
        for (ZORParseContext* at = parser.currentContext; at->outerContext; ++count) {
            at = zor_XMLContextGetOuterContext(at);
        }
        return count;
    }

    IncidentLog log;
    ZorCollection collection{"phone"};
    ZorIncidentContext incidents;
    ZorXmlParser parser;

private:
    ZorElementParseRules* topRule;
};

// The text of an incident of a parser without a label, as IncidentLog gives it.
inline std::string incidentAt(int severity, int line, int column, std::string const& text) {
    return std::to_string(severity) + " {zor_XMLParse: line " + std::to_string(line) + ", column " +
           std::to_string(column) + " }" + text + "\n";
}
