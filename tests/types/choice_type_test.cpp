// Choices.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/text.h"
#include "tests/types/recording_writer.h"
#include "zor/types.h"

namespace {

// A choice for the length of a test.
class Choice {
public:
    explicit Choice(char const* name, std::initializer_list<char const*> options = {})
        : type(zor_choiceMake(name)) {
        for (char const* const option : options) zor_choiceAddOption(type, option);
    }
    explicit Choice(ZorDataType* copied) : type(copied) {}
    Choice(Choice const&) = delete;
    Choice& operator=(Choice const&) = delete;
    ~Choice() { delete type; }
    operator ZorDataType*() const { return type; }
    ZorDataType* operator->() const { return type; }

    void add(void const* option) { zor_choiceAddOption(type, option); }
    bool accepts(void const* text) const { return zor_dataTypeValidate(type, text) != 0; }
    std::string defaultText() const { return taken(zor_dataTypeDefault(type)); }

private:
    ZorDataType* type;
};

std::string* enumerated = nullptr;

void noteOption(int index, char const* text) {
    *enumerated += std::to_string(index) + '=' + text + ';';
}

// "0=first;1=second;" and the number that enumeration answered.
std::string optionsOf(ZorDataType* type) {
    std::string options;
    enumerated = &options;
    int const count = zor_choiceEnumerate(type, noteOption);
    enumerated = nullptr;
    return options + std::to_string(count);
}

std::vector<std::string> exported(ZorDataType* type) {
    RecordingWriter writer;
    zor_dataTypeExportXML(&writer, type);
    return writer.writes;
}

using Writes = std::vector<std::string>;

} // namespace

TEST(Choice, IsAChoiceAndNoRange) {
    Choice const choice("mode");
    EXPECT_STREQ(zor_dataTypeName(choice), "mode");
    EXPECT_NE(zor_datatypeIsChoice(choice), 0);
    EXPECT_EQ(zor_datatypeIsRange(choice), 0);
}

TEST(Choice, TakesTheValueFunctionsOfString) {
    Choice const choice("mode");
    ZorDataType const* const string = ZorBuiltIn::getDataType("string");
    EXPECT_EQ(choice->fromStringFn, string->fromStringFn);
    EXPECT_EQ(choice->copyValueFn, string->copyValueFn);
    EXPECT_EQ(choice->freeValueFn, string->freeValueFn);
    EXPECT_EQ(choice->setFromStringFn, string->setFromStringFn);
    EXPECT_EQ(choice->toStringFn, string->toStringFn);
}

TEST(Choice, SharesANameGivenAsString) {
    Text const name("a choice's name");
    ZorString* const string = name;
    ZorDataType* const choice = zor_choiceMake(string);
    EXPECT_EQ(choice->name, string);
    EXPECT_EQ(string->refCount, 2);
    delete choice;
    EXPECT_EQ(string->refCount, 1);
}

// A new choice accepts no text at all and has neither options nor a default.
TEST(Choice, StartsEmpty) {
    Choice const choice("mode");
    EXPECT_FALSE(choice.accepts("a"));
    EXPECT_FALSE(choice.accepts(""));
    EXPECT_EQ(choice.defaultText(), "(null)");
    EXPECT_EQ(choice->userData, nullptr);
    EXPECT_EQ(optionsOf(choice), "0");
}

// Exactly the options are valid: case and blanks count.
TEST(Choice, AcceptsItsOptionsOnly) {
    Choice const choice("letter", {"a", "b"});
    EXPECT_TRUE(choice.accepts("a"));
    EXPECT_TRUE(choice.accepts("b"));
    EXPECT_TRUE(choice.accepts(static_cast<ZorString*>(Text("b"))));
    for (char const* const text : {"A", " a", "a ", "", "ab", "c"}) {
        EXPECT_FALSE(choice.accepts(text)) << '"' << text << '"';
    }
}

TEST(Choice, MayHaveAnEmptyOption) {
    Choice const choice("maybe", {"", "x"});
    EXPECT_TRUE(choice.accepts(""));
    EXPECT_EQ(choice.defaultText(), "");
    EXPECT_EQ(optionsOf(choice), "0=;1=x;2");
}

TEST(Choice, NullOptionIsTheEmptyOne) {
    Choice choice("maybe");
    choice.add(nullptr);
    EXPECT_EQ(optionsOf(choice), "0=;1");
    EXPECT_TRUE(choice.accepts(""));
}

TEST(Choice, KeepsDuplicates) {
    Choice const choice("letter", {"a", "b", "b"});
    EXPECT_EQ(optionsOf(choice), "0=a;1=b;2=b;3");
}

TEST(Choice, KeepsTheOrderOfItsOptions) {
    Choice const choice("letter", {"z", "a", "m", "b"});
    EXPECT_EQ(optionsOf(choice), "0=z;1=a;2=m;3=b;4");
}

TEST(Choice, FirstOptionIsTheDefaultForGood) {
    Choice choice("letter");
    EXPECT_EQ(choice.defaultText(), "(null)");
    choice.add("x");
    EXPECT_EQ(choice.defaultText(), "x");
    EXPECT_EQ(choice->flags, ZorDataType::isChoice);
    choice.add("y");
    choice.add("a");
    EXPECT_EQ(choice.defaultText(), "x");
}

TEST(Choice, SharesAnOptionGivenAsString) {
    Text const first("a shared option");
    Text const second("another one");
    ZorString* const strings[] = {first, second};
    {
        Choice choice("mode");
        for (ZorString* const string : strings) choice.add(string);
        EXPECT_EQ(strings[0]->refCount, 2) << "the default is a string of its own";
        EXPECT_EQ(strings[1]->refCount, 2);
        EXPECT_EQ(choice.defaultText(), "a shared option");
    }
    EXPECT_EQ(strings[0]->refCount, 1);
    EXPECT_EQ(strings[1]->refCount, 1);
}

TEST(Choice, CopiesAnOptionGivenAsText) {
    char option[] = "before";
    Choice choice("mode");
    choice.add(option);
    option[0] = 'X';
    EXPECT_EQ(optionsOf(choice), "0=before;1");
    EXPECT_EQ(choice.defaultText(), "before");
}

TEST(Choice, OptionMayBeAPermanentString) {
    Choice choice("mode", {"true"});
    choice.add(ZorString::create("false", -1));
    EXPECT_EQ(optionsOf(choice), "0=true;1=false;2");
}

// An option whose first byte is 0xFF is text, not a string object.
TEST(Choice, OptionMayBeginWithTheMarkerByte) {
    Text const odd("\xFF\x01");
    Choice choice("mode");
    choice.add(static_cast<ZorString*>(odd));
    EXPECT_TRUE(choice.accepts(static_cast<ZorString*>(odd)));
    EXPECT_FALSE(choice.accepts("x"));
    EXPECT_EQ(choice.defaultText(), "\xFF\x01");
    Choice const copy(new ZorDataType(choice));
    EXPECT_TRUE(copy.accepts(static_cast<ZorString*>(odd)));
    EXPECT_EQ(copy.defaultText(), "\xFF\x01");
}

TEST(Choice, HasNoOrder) {
    Choice const choice("letter", {"a", "b"});
    EXPECT_EQ(zor_dataTypeCompare(choice, "a", "b"), 0);
    EXPECT_EQ(zor_dataTypeCompare(choice, "b", "a"), 0);
}

TEST(Choice, RefusesHostNumbers) {
    Choice const choice("number", {"0", "1"});
    EXPECT_EQ(zor_dataTypeValidateInt(choice, 1), 0);
    EXPECT_EQ(zor_dataTypeValidateUInt(choice, 1), 0);
    EXPECT_EQ(zor_dataTypeValidateFloat(choice, 1), 0);
    for (ZorExtTypeFuncs const& functions : choice->extFuncs) {
        EXPECT_EQ(functions.toInternal, nullptr);
        EXPECT_EQ(functions.setInternal, nullptr);
    }
}

// Enumeration calls nothing and answers 0 for any other type.
TEST(Choice, OtherTypesEnumerateNothing) {
    for (char const* const name : {"string", "int", "url"}) {
        EXPECT_EQ(optionsOf(ZorBuiltIn::getDataType(name)), "0") << name;
    }
    // Not even for one whose user data would do.
    Choice const choice("letter", {"a"});
    choice->flags = static_cast<unsigned char>(choice->flags & ~ZorDataType::isChoice);
    EXPECT_EQ(optionsOf(choice), "0");
}

TEST(ChoiceCopy, HasOptionsOfItsOwn) {
    Choice source("letter", {"a", "b"});
    Choice copy(new ZorDataType(source));
    EXPECT_NE(zor_datatypeIsChoice(copy), 0);
    EXPECT_EQ(optionsOf(copy), "0=a;1=b;2");
    EXPECT_EQ(copy.defaultText(), "a");
    source.add("c");
    copy.add("d");
    EXPECT_EQ(optionsOf(source), "0=a;1=b;2=c;3");
    EXPECT_EQ(optionsOf(copy), "0=a;1=b;2=d;3");
}

TEST(ChoiceCopy, SharesTheOptionStrings) {
    Text const option("a shared option");
    ZorString* const string = option;
    {
        Choice source("mode");
        source.add(string);
        EXPECT_EQ(string->refCount, 2);
        {
            Choice const copy(new ZorDataType(source));
            EXPECT_EQ(string->refCount, 3);
            EXPECT_NE(copy->userData, source->userData);
        }
        EXPECT_EQ(string->refCount, 2);
    }
    EXPECT_EQ(string->refCount, 1);
}

TEST(ChoiceCopy, OutlivesItsSource) {
    ZorDataType* const source = zor_choiceMake("letter");
    zor_choiceAddOption(source, "a");
    zor_choiceAddOption(source, "b");
    Choice const copy(new ZorDataType(source));
    delete source;
    EXPECT_EQ(optionsOf(copy), "0=a;1=b;2");
    EXPECT_EQ(copy.defaultText(), "a");
    EXPECT_EQ(exported(copy).size(), 4U);
}

TEST(ChoiceCopy, OfAnEmptyChoiceIsEmpty) {
    Choice const source("mode");
    Choice copy(new ZorDataType(source));
    EXPECT_EQ(copy->userData, nullptr);
    EXPECT_EQ(copy.defaultText(), "(null)");
    copy.add("first");
    EXPECT_EQ(copy.defaultText(), "first");
    EXPECT_EQ(optionsOf(source), "0");
}

// A choice keeps nothing of the table of built-in types.
TEST(Choice, OutlivesTheBuiltInTable) {
    Choice choice("letter", {"a"});
    ZorBuiltIn::deleteBuiltInTypes();
    choice.add("b");
    EXPECT_TRUE(choice.accepts("b"));
    Choice const copy(new ZorDataType(choice));
    EXPECT_EQ(copy.defaultText(), "a");
}

TEST(ChoiceExport, WritesEveryElementApart) {
    Choice const choice("mode", {"on", "off"});
    EXPECT_EQ(exported(choice), (Writes{"<choice name=\"mode\">", "<option>on</option>",
                                        "<option>off</option>", "</choice>"}));
}

TEST(ChoiceExport, OfAnEmptyChoiceHasNoOptions) {
    EXPECT_EQ(exported(Choice("mode")), (Writes{"<choice name=\"mode\">", "</choice>"}));
}

TEST(ChoiceExport, WritesDuplicates) {
    EXPECT_EQ(
        exported(Choice("m", {"a", "a"})),
        (Writes{"<choice name=\"m\">", "<option>a</option>", "<option>a</option>", "</choice>"}));
}

// Name and options are written as they are stored.
TEST(ChoiceExport, EscapesNothing) {
    EXPECT_EQ(exported(Choice("a&b", {"<x>", "\"'%s", ""})),
              (Writes{"<choice name=\"a&b\">", "<option><x></option>", "<option>\"'%s</option>",
                      "<option></option>", "</choice>"}));
}

// No length limits a line, nor does it change the number of writes.
TEST(ChoiceExport, WritesLongTextsWhole) {
    for (std::size_t const length : {150U, 180U, 199U, 200U, 201U, 5000U}) {
        std::string const name(length, 'n');
        std::string const option(length, 'o');
        EXPECT_EQ(exported(Choice(name.c_str(), {option.c_str(), "x"})),
                  (Writes{"<choice name=\"" + name + "\">", "<option>" + option + "</option>",
                          "<option>x</option>", "</choice>"}));
    }
}
