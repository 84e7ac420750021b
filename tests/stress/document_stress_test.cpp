// Several threads on the values of one document.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/stress/threads.h"

namespace {

constexpr int kWriters = 3;
constexpr int kReaders = 3;
constexpr int kRounds = rounds(40000);

constexpr char kDefinition[] =
    "<store><schema name='phone'>"
    "<choice name='colour'><option>green</option><option>red</option></choice>"
    "<range name='level' baseType='int' minValue='0' maxValue='1000000'/>"
    "<branch name='key' occurrences='4'/>"
    "<item name='label' type='string' default='' parent='/key'/>"
    "<item name='calls' type='level' default='0' parent='/key'/>"
    "<item name='lamp' type='colour' parent='/key'/>"
    "<item name='gain' type='float' default='0' parent='/key'/>"
    "<item name='address' type='ip_address' default='0.0.0.0' parent='/key'/>"
    "</schema></store>";

class DocumentStress : public testing::Test {
protected:
    DocumentStress() : store("store") {
        store.importXML(kDefinition);
        schema = store.getSchema("phone");
        document = store.makeDocument("phone", "phone1");
    }

    ZorSchemaNode* node(char const* path) const { return nodeAt(schema, path); }

    ZorCollection store;
    ZorSchema* schema;
    ZorDocument* document;
};

// A text that tells whether it is whole: the writer, the round, and as many letters of that writer
// as the round says, across the lengths where strings move to the heap and back.
std::string signedText(int writer, int round) {
    auto const length = static_cast<std::size_t>(round % 90);
    return std::to_string(writer) + ' ' + std::to_string(round) + ' ' +
           std::string(length, static_cast<char>('a' + writer));
}

// The round of a signed text; -1 when no writer can have written it.
int roundOf(std::string const& text) {
    char* end;
    long const writer = std::strtol(text.c_str(), &end, 10);
    long const round = std::strtol(end, &end, 10);
    if (writer < 0 || writer >= kWriters || round < 0 || round > kRounds) return -1;
    return text == signedText(int(writer), int(round)) ? int(round) : -1;
}

// What a writer of floats writes: both halves of the number say the same.
double signedNumber(int round) { return round + round / 1048576.0; }

bool isSignedNumber(double number) {
    int const round = static_cast<int>(number);
    return number == signedNumber(round);
}

} // namespace

// A reader sees a text that some writer wrote, whole, and the last write of one of them stays.
TEST_F(DocumentStress, TextsAreReadWhole) {
    ZorSchemaNode* const label = node("key/label");
    inThreads(kWriters + kReaders, [&](int thread) {
        int torn = 0;
        for (int round = 1; round <= kRounds; ++round) {
            if (thread < kWriters) {
                document->setStringNodeValue(label, 0, signedText(thread, round).c_str());
                continue;
            }
            std::string const text = textAt(document, label, 0);
            if (!text.empty() && roundOf(text) < 1) ++torn;
        }
        EXPECT_EQ(torn, 0);
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(roundOf(textAt(document, label, 0)), kRounds);
}

// The same for numbers of all kinds; a number that one thread counts up is never seen to go back.
TEST_F(DocumentStress, NumbersAreReadWholeAndInOrder) {
    ZorSchemaNode* const calls = node("key/calls");
    ZorSchemaNode* const gain = node("key/gain");
    inThreads(kWriters + kReaders, [&](int thread) {
        long last = 0;
        int torn = 0;
        int backwards = 0;
        for (int round = 1; round <= kRounds; ++round) {
            if (thread == 0) document->setIntNodeValue(calls, 3, round);
            if (thread < kWriters) {
                document->setFloatNodeValue(gain, 1, signedNumber(round));
                continue;
            }
            long const count = document->getIntNodeValue(calls, 3, nullptr);
            if (count < last) ++backwards;
            last = count;
            if (!isSignedNumber(document->getFloatNodeValue(gain, 1, nullptr))) ++torn;
        }
        EXPECT_EQ(torn, 0);
        EXPECT_EQ(backwards, 0);
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(document->getIntNodeValue(calls, 3, nullptr), kRounds);
    EXPECT_EQ(document->getFloatNodeValue(gain, 1, nullptr), signedNumber(kRounds));
}

// Each thread counts up a cell of its own, next to those of the others: no update is lost.
TEST_F(DocumentStress, CountsAddUp) {
    ZorSchemaNode* const calls = node("key/calls");
    inThreads(4, [&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            long const before = document->getIntNodeValue(calls, thread, nullptr);
            EXPECT_EQ(document->setIntNodeValue(calls, thread, before + 1), 1);
        }
    });
    long sum = 0;
    for (int i = 0; i < 4; ++i) sum += document->getIntNodeValue(calls, i, nullptr);
    EXPECT_EQ(sum, 4L * kRounds);
    std::string const count = std::to_string(kRounds) + ' ';
    EXPECT_EQ(selected(document, "key/calls"), count + count + count + count);
}

// Of two texts that are written, emptied and restored by others, a set of results reads one of
// them, the default, or nothing.
TEST_F(DocumentStress, ResultSetsReadWhatIsThere) {
    inThreads(4, [&](int thread) {
        Random random(thread);
        int wrong = 0;
        for (int round = 0; round < kRounds / 10; ++round) {
            ZorResultSet* const lamps = document->select("key/lamp");
            EXPECT_EQ(lamps->getResultCount(), 4U);
            for (; !lamps->eof(); lamps->next()) {
                int const action = random.below(8);
                if (action == 0) lamps->setValue("red");
                if (action == 1) lamps->setValue(nullptr);
                if (action == 2) lamps->restoreDefault();
                if (action == 3) document->setStringNodeValue(node("key/lamp"), 2, "green");
                std::string const text = taken(lamps->getValue());
                if (text != "red" && text != "green" && text != "(null)") ++wrong;
                lamps->wasChanged();
            }
            delete lamps;
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(takeIncidents(), "");
    });
}

// A refusal in one thread changes nothing for the others, and is reported in its own thread.
TEST_F(DocumentStress, RefusalsStayWithTheirThread) {
    ZorSchemaNode* const address = node("key/address");
    inThreads(4, [&](int thread) {
        std::string const good = "192.0.2." + std::to_string(thread);
        for (int round = 0; round < kRounds / 4; ++round) {
            EXPECT_EQ(document->setStringNodeValue(address, thread, good.c_str()), 1);
            std::string const bad = "192.0.2." + std::to_string(thread + 256);
            EXPECT_EQ(document->setStringNodeValue(address, thread, bad.c_str()), 0);
            EXPECT_EQ(takeIncidents(), "3 setStringNodeValue: value (" + bad + ") is not valid\n");
            EXPECT_EQ(textAt(document, address, thread), good);
        }
    });
    EXPECT_EQ(selected(document, "key/address"), "192.0.2.0 192.0.2.1 192.0.2.2 192.0.2.3 ");
}

// An export and a copy hold the document's lock from end to end: they show the cells of one moment.
TEST_F(DocumentStress, ExportsAndCopiesShowOneMoment) {
    Flag done;
    ZorSchemaNode* const label = node("key/label");
    inThreads(3, [&](int thread) {
        if (thread == 0) {
            for (int round = 1; round <= kRounds / 4; ++round) {
                std::string const text = signedText(0, round);
                // Forwards, so that a later cell never holds a later round.
                for (long key = 0; key < 4; ++key) {
                    document->setStringNodeValue(label, key, text.c_str());
                }
            }
            return done.set();
        }
        std::string const copy = "copy" + std::to_string(thread);
        while (!done.isSet()) {
            store.copyDocument(copy.c_str(), document);
            ZorDocument* const copied = store.getDocument(copy.c_str());
            int const first = roundOf(textAt(copied, label, 0));
            int const last = roundOf(textAt(copied, label, 3));
            if (last > 0) {
                EXPECT_TRUE(first == last || first == last + 1) << first << ' ' << last;
            }
            std::string const xml = store.exportDocument(copy.c_str());
            EXPECT_EQ(xml, store.exportDocument(copy.c_str()));
            store.exportDocument("phone1");
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}
