// <range>, <choice> and <option>.

#include <gtest/gtest.h>

#include <string>

#include "collection/range_info.h"
#include "tests/collection/import_store.h"
#include "tests/support/text.h"
#include "zor/collection.h"
#include "zor/types.h"

namespace {

constexpr char kNoRange[] = "Could Not Make Range Type with supplied parameters";
constexpr char kBlankOption[] = "option must not be blank";

} // namespace

TEST(RangeInfo, HoldsAReferenceToItsTexts) {
    Text const nameText("r");
    Text const minText("1");
    Text const maxText("9");
    ZorString* const name = nameText;
    ZorString* const min = minText;
    ZorString* const max = maxText;
    {
        RangeInfo const info(name, nullptr, min, max);
        EXPECT_EQ(info.name, name);
        EXPECT_EQ(info.baseType, nullptr);
        EXPECT_EQ(info.minimum, min);
        EXPECT_EQ(info.maximum, max);
        for (ZorString const* const text : {name, min, max}) EXPECT_EQ(text->refCount, 2);
    }
    for (ZorString const* const text : {name, min, max}) EXPECT_EQ(text->refCount, 1);
}

TEST(DefinitionRange, MakesATypeOfTheSchema) {
    ImportStore store;
    EXPECT_EQ(store.define("<range name='volume' baseType='int' minValue='0' maxValue='10'/>"
                           "<item name='v' type='volume' default='10'/>"),
              "");
    ZorDataType* const type = store.collection.getSchema("s")->getDataType("volume");
    ASSERT_NE(type, nullptr);
    EXPECT_TRUE(zor_datatypeIsRange(type));
    EXPECT_STREQ(zor_rangeMin(type), "0");
    EXPECT_STREQ(zor_rangeMax(type), "10");
    EXPECT_EQ(zor_rangeBaseType(type), ZorBuiltIn::getDataType("int"));
    EXPECT_EQ(store.shape(), "v:volume=10");
    EXPECT_EQ(store.collection.getDataType("volume"), nullptr);
}

// Its name is taken as it stands; unlike that of a node.
TEST(DefinitionRange, BlanksInNamesStay) {
    ImportStore store;
    EXPECT_EQ(
        store.define("<range name=' r ' baseType='int' minValue='1' maxValue=' 9'>\n</range>"),
        plainError("zor_rangeMake( r ): max value ( 9) is not valid") + errorAt(3, 0, kNoRange));
    EXPECT_EQ(store.import("<phone><schema name='t'>"
                           "<range name=' r ' baseType='int' minValue='1' maxValue='9'/>"
                           "</schema></phone>"),
              "");
    EXPECT_EQ(store.types("t"),
              "<range name=\" r \" baseType=\"int\" minValue=\"1\" maxValue=\"9\"/>");
}

// Every check has its own message, and the first that fails is the only one.
TEST(DefinitionRange, ChecksComeInTheirOrder) {
    struct {
        char const* attributes;
        char const* message;
    } const rows[] = {
        {"", "missing name attribute"},
        {"baseType='nope' minValue='' maxValue=''", "missing name attribute"},
        {"name=''", "name must not be blank"},
        {"name='' baseType='' minValue='' maxValue=''", "name must not be blank"},
        {"name='r'", "missing baseType attribute"},
        {"name='r' minValue='' maxValue=''", "missing baseType attribute"},
        {"name='r' baseType=''", "baseType must not be blank"},
        {"name='r' baseType='' maxValue=''", "baseType must not be blank"},
        {"name='r' baseType='nope'", "missing minValue attribute"},
        {"name='r' baseType='nope' maxValue=''", "missing minValue attribute"},
        {"name='r' baseType='nope' minValue=''", "minValue must not be blank"},
        {"name='r' baseType='nope' minValue='' maxValue=''", "minValue must not be blank"},
        {"name='r' baseType='nope' minValue='x'", "missing maxValue attribute"},
        {"name='r' baseType='nope' minValue='x' maxValue=''", "maxValue must not be blank"},
        {"name='r' baseType='nope' minValue='x' maxValue='y'", "baseType (nope) not found"},
        {"name='r' baseType=' int' minValue='1' maxValue='2'", "baseType ( int) not found"},
    };
    for (auto const& row : rows) {
        ImportStore store;
        EXPECT_EQ(store.define(std::string("<range ") + row.attributes + "></range>"),
                  errorAt(2, 0, row.message))
            << row.attributes;
        EXPECT_EQ(store.types(), "") << row.attributes;
    }
}

// What zor_rangeMake refuses is reported twice, at the end of the element.
TEST(DefinitionRange, RefusalsOfTheTypeAreReportedAtTheEnd) {
    struct {
        char const* attributes;
        char const* message;
    } const rows[] = {
        {"baseType='url' minValue='5' maxValue='1'", "baseType (url) is not suitable for a range"},
        {"baseType='int' minValue='5' maxValue='1'",
         "max value must be greater than or equal to min value"},
        {"baseType='uint' minValue='-1' maxValue='5'",
         "max value must be greater than or equal to min value"},
        {"baseType='int' minValue='x' maxValue='y'", "min value (x) is not valid"},
        {"baseType='int' minValue='1' maxValue='9x'", "max value (9x) is not valid"},
    };
    for (auto const& row : rows) {
        ImportStore store;
        EXPECT_EQ(store.define(std::string("<range name='r' ") + row.attributes + ">\n</range>"),
                  plainError(std::string("zor_rangeMake(r): ") + row.message) +
                      errorAt(3, 0, kNoRange))
            << row.attributes;
        EXPECT_EQ(store.types(), "") << row.attributes;
    }
}

// Only built-in types can be the base, whatever the schema and the collection have.
TEST(DefinitionRange, BaseIsLookedUpAmongTheBuiltInsOnly) {
    ImportStore store;
    store.each([](ZorCollection& collection) {
        EXPECT_EQ(collection.addDataType(zor_choiceMake("shared")), 1);
    });
    EXPECT_EQ(store.define("<choice name='c'><option>1</option></choice>\n"
                           "<range name='r' baseType='c' minValue='1' maxValue='1' x=''/>\n"
                           "<range name='r' baseType='shared' minValue='1' maxValue='1' x=''/>\n"
                           "<choice name='int' x=''><option>1</option></choice>"
                           "<range name='r' baseType='int' minValue='1' maxValue='2'/>"),
              warningAt(3, 0, "attribute not valid in this context (x)") +
                  errorAt(3, 0, "baseType (c) not found") +
                  warningAt(4, 0, "attribute not valid in this context (x)") +
                  errorAt(4, 0, "baseType (shared) not found") +
                  warningAt(5, 0, "attribute not valid in this context (x)"));
    ZorSchema* const schema = store.collection.getSchema("s");
    EXPECT_EQ(zor_rangeBaseType(schema->getDataType("r")), ZorBuiltIn::getDataType("int"));
}

// A name that the schema has already keeps its type; the new one is destroyed without a word.
TEST(DefinitionRange, TakenNameKeepsItsType) {
    ImportStore store;
    EXPECT_EQ(store.define("<range name='r' baseType='int' minValue='1' maxValue='2'/>"
                           "<range name='r' baseType='uint' minValue='3' maxValue='4'/>"
                           "<choice name='c'><option>a</option></choice>"
                           "<range name='c' baseType='int' minValue='5' maxValue='6'/>"
                           "<item name='i' type='r' default='2'/>"
                           "<item name='j' type='c' default='a'/>"),
              "");
    EXPECT_EQ(store.shape(), "i:r=2 j:c=a");
}

TEST(DefinitionRange, NothingStandsInsideIt) {
    ImportStore store;
    EXPECT_EQ(store.define("<range name='r' baseType='int' minValue='1' maxValue='2'>\n<option/>"
                           "</range><item name='i' type='r'/>"),
              notRecognisedAt(3, 0, "option", {}, "range", "schema"));
    EXPECT_EQ(store.shape(), "i:r");
}

TEST(DefinitionChoice, MakesATypeOfTheSchema) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name='mode'>"
                           "<option>on</option><option>off</option><option>on</option></choice>"
                           "<item name='m' type='mode' default='off'/>"),
              "");
    EXPECT_EQ(store.types(), "<choice name=\"mode\"><option>on</option><option>off</option>"
                             "<option>on</option></choice>");
    ZorDataType* const type = store.collection.getSchema("s")->getDataType("mode");
    EXPECT_TRUE(zor_datatypeIsChoice(type));
    EXPECT_EQ(taken(zor_dataTypeDefault(type)), "on");
    EXPECT_EQ(store.shape(), "m:mode=off");
}

TEST(DefinitionChoice, MayHaveNoOption) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name='c'/>"
                           "<item name='i' type='c'/>"),
              "");
    EXPECT_EQ(store.types(), "<choice name=\"c\"></choice>");
    EXPECT_EQ(store.shape(), "i:c");
}

TEST(DefinitionChoice, NameIsNeededAndTakenAsItStands) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice></choice>"), errorAt(2, 0, "missing name attribute"));
    ImportStore blank;
    EXPECT_EQ(blank.define("<choice name=''></choice>"), errorAt(2, 0, "name must not be blank"));
    ImportStore spaced;
    EXPECT_EQ(spaced.define("<choice name=' c '/>"), "");
    EXPECT_EQ(spaced.types(), "<choice name=\" c \"></choice>");
}

// The options of a choice that was refused go nowhere, without a word.
TEST(DefinitionChoice, OptionsOfARejectedChoiceAreSkipped) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name=''>\n<option x=''>a</option>\n<option/>\n</choice>"
                           "<choice name='c'><option>b</option></choice>"),
              errorAt(2, 0, "name must not be blank") +
                  warningAt(3, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.types(), "<choice name=\"c\"><option>b</option></choice>");
}

TEST(DefinitionChoice, TakenNameKeepsItsType) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name='c'><option>a</option></choice>"
                           "<choice name='c'><option>b</option><option/></choice>"
                           "<range name='r' baseType='int' minValue='1' maxValue='2'/>"
                           "<choice name='r'><option>b</option></choice>"
                           "<item name='i' type='r' default='1'/>"
                           "<item name='j' type='c' default='a'/>"),
              "");
    EXPECT_EQ(store.shape(), "i:r=1 j:c=a");
    EXPECT_EQ(zor_choiceEnumerate(store.collection.getSchema("s")->getDataType("c"),
                                  [](int, char const*) {}),
              1);
}

// The type is the schema's from the start of its element: one that ends early keeps its options.
TEST(DefinitionChoice, IsRegisteredAtItsStart) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'><choice name='c'><option>a</option><option>b"),
              errorAt(1, 68, "no element found"));
    EXPECT_EQ(store.types(), "<choice name=\"c\"><option>a</option></choice>");
}

TEST(DefinitionOption, IsTrimmed) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name='c'><option>  a b \n</option>"
                           "<option>\n\tx&amp;y</option><option><![CDATA[ <z> ]]></option>"
                           "<option>&#32;&#32;q&#32;</option></choice>"),
              "");
    EXPECT_EQ(store.types(), "<choice name=\"c\"><option>a b</option><option>x&y</option>"
                             "<option><z></option><option>q</option></choice>");
}

// A blank one is refused; the options before it stay.
TEST(DefinitionOption, BlankOneIsRefused) {
    for (char const* const blank : {"<option>\n</option>", "<option></option>",
                                    "<option>  &#9; </option>", "<option><!-- a --></option>"}) {
        ImportStore store;
        std::string const element = blank;
        std::size_t const end = element.rfind("</option>");
        std::size_t const line = element.find('\n');
        int const row = line == std::string::npos ? 3 : 4;
        int const column = line == std::string::npos ? static_cast<int>(end) : 0;
        EXPECT_EQ(store.define("<choice name='c'><option>a</option><option>b</option>\n" + element +
                               "\n</choice>"),
                  errorAt(row, column, kBlankOption))
            << blank;
        EXPECT_EQ(store.types(), "<choice name=\"c\"><option>a</option><option>b</option></choice>")
            << blank;
    }
}

// Once a warning has lifted the error, the options behind it are taken, too.
TEST(DefinitionOption, OptionsBehindABlankOneNeedAWarningInBetween) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name='c'>\n<option/>\n<option x=''>b</option></choice>"),
              errorAt(3, 9, kBlankOption) +
                  warningAt(4, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.types(), "<choice name=\"c\"><option>b</option></choice>");
}

TEST(DefinitionOption, TakesNoAttribute) {
    ImportStore store;
    EXPECT_EQ(store.define("<choice name='c'>\n<option name='a'>b</option></choice>"),
              warningAt(3, 0, "attribute not valid in this context (name)"));
    EXPECT_EQ(store.types(), "<choice name=\"c\"><option>b</option></choice>");
}

TEST(DefinitionOption, StandsInChoicesOnly) {
    ImportStore store;
    EXPECT_EQ(
        store.define("<option>a</option>"),
        notRecognisedAt(2, 0, "option", {"branch", "item", "range", "choice"}, "schema", "phone"));
}
