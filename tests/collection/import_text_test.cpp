// Values that come by import, compared with values that are set.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/collection/objects.h"
#include "tests/foundation/strings.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

// A text as it stands in XML, and the value it is; null for none.
struct Value {
    std::string xml;
    char const* value;
};

char const kLong[] = "a text that is much longer than the buffer that stands inside a string";

class ImportText : public testing::Test {
protected:
    ImportText() {
        store.importXML("<cfg><schema name='s'><choice name='mode'><option>true</option>"
                        "<option>short</option></choice><range name='level' baseType='string' "
                        "minValue='a' maxValue='t'/>"
                        "<item name='string' type='string' occurrences='3'/>"
                        "<item name='given' type='string' default='true' occurrences='3'/>"
                        "<item name='url' type='url' occurrences='3'/>"
                        "<item name='domain' type='domain_name' occurrences='3'/>"
                        "<item name='digits' type='digit_string' occurrences='3'/>"
                        "<item name='mode' type='mode' occurrences='3'/>"
                        "<item name='level' type='level' occurrences='3'/>"
                        "<item name='bool' type='bool' occurrences='3'/>"
                        "<item name='int' type='int' occurrences='3'/></schema>"
                        "<document name='imported' schema='s'></document>"
                        "<document name='set' schema='s'></document></cfg>");
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(nodes().size(), 9U);
    }

    ZorDocument* imported() { return store.getDocument("imported"); }
    ZorDocument* set() { return store.getDocument("set"); }
    std::vector<ZorSchemaNode*> nodes() {
        std::vector<ZorSchemaNode*> all;
        ZorSchemaNode* node = set()->getRootNode()->getFirstChildNode();
        for (; node; node = node->getNextNode()) all.push_back(node);
        return all;
    }

    // What an export of the document writes between its tags.
    static std::string body(ZorDocument* document) {
        return written([document](ZorDataWriter* writer) {
            document->exportXML(document->getRootNode(), 0, writer);
        });
    }

    // Brings the values of the node by import. What was reported.
    std::string import(ZorSchemaNode* node, std::vector<Value> const& texts) {
        std::string const name = node->getName();
        std::string xml = "<cfg><document name='imported' schema='s'>";
        for (Value const& text : texts) xml += '<' + name + '>' + text.xml + "</" + name + '>';
        store.importXML((xml + "</document></cfg>").c_str());
        return log.take();
    }

    // Sets the same values.
    std::string assign(ZorSchemaNode* node, std::vector<Value> const& texts) {
        long occurrence = 0;
        for (Value const& text : texts) set()->setStringNodeValue(node, occurrence++, text.value);
        return log.take();
    }

    // Expects both documents to hold the same, the strings of the one as those of the other are:
    // permanent or not, and in no larger buffer.
    void expectSame(ZorSchemaNode* node) {
        for (int i = 0; i < node->getTotalOccurrences(); ++i) {
            ZorValueNode const& ours = *imported()->getDataItem(node, i, 0);
            ZorValueNode const& theirs = *set()->getDataItem(node, i, 0);
            ASSERT_EQ(ours.flags, theirs.flags) << node->getName() << ' ' << i;
            if (ours.flags & ZorValueNode::noValue) continue;
            EXPECT_EQ(taken(node->dataType->toStringFn(ours.value)),
                      taken(node->dataType->toStringFn(theirs.value)));
            if (isString(node)) expectAlike(ours.value.stringValue, theirs.value.stringValue);
        }
    }

    static bool isString(ZorSchemaNode const* node) {
        ZorToStringFn const stringToText = ZorBuiltIn::getDataType("string")->toStringFn;
        return node->dataType->toStringFn == stringToText;
    }

    static void expectAlike(ZorString const* ours, ZorString const* theirs) {
        expectSound(ours);
        EXPECT_EQ(ours->refCount, theirs->refCount) << ours->text;
        EXPECT_LE(ours->capacity, theirs->capacity) << ours->text;
        if (permanent(content(ours))) {
            EXPECT_EQ(ours, theirs);
        }
    }

    IncidentLog log;
    std::vector<Value> const values{
        {"short", "short"},
        {"", nullptr},
        {"\"\"", ""},
        {"\"", "\""},
        {"&quot;&quot;", ""},
        {"true", "true"},
        {"t&#114;ue", "true"},
        {" true", " true"},
        {"7", "7"},
        {"1&amp;2", "1&2"},
        {"&lt;&gt;", "<>"},
        {kLong, kLong},
        {"a text of thirty-two characters.", "a text of thirty-two characters."},
        {"a text of thirty-three characters", "a text of thirty-three characters"},
        {"one<!-- --> &apos;two&apos; and so on, which is long and comes in pieces",
         "one 'two' and so on, which is long and comes in pieces"},
    };
    ZorCollection store{"cfg"};
};

} // namespace

// Every value after every other one, in the same cell.
TEST_F(ImportText, GivesWhatSettingGives) {
    int refused = 0;
    for (ZorSchemaNode* const node : nodes()) {
        for (Value const& first : values) {
            for (Value const& second : values) {
                for (Value const& value : {first, second}) {
                    std::string const ours = import(node, {value});
                    ASSERT_EQ(ours, assign(node, {value})) << node->getName() << ' ' << value.xml;
                    refused += !ours.empty();
                    expectSame(node);
                }
                ASSERT_FALSE(HasFailure())
                    << node->getName() << ' ' << first.xml << " then " << second.xml;
            }
        }
    }
    EXPECT_GT(refused, 200); // by types that take few texts
    EXPECT_EQ(body(imported()), body(set()));
}

// The text of one element is not disturbed by those that come after it in the same import.
TEST_F(ImportText, GivesWhatSettingGivesSideBySide) {
    for (ZorSchemaNode* const node : nodes()) {
        for (std::size_t i = 0; i < values.size() * values.size(); ++i) {
            Value const& a = values[i % values.size()];
            Value const& b = values[i / values.size()];
            Value const& c = values[(i * 7 + 3) % values.size()];
            ASSERT_EQ(import(node, {a, b, c}), assign(node, {a, b, c})) << a.xml << ", " << b.xml;
            expectSame(node);
            ASSERT_FALSE(HasFailure()) << node->getName() << ' ' << a.xml << ", " << b.xml;
        }
    }
}
