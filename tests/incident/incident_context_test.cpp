// The stack of context frames.

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "tests/support/allocations.h"
#include "zor/incident.h"

namespace {

// Describes a frame by the text that its data points at.
void renderText(std::string& out, void* data) { out += static_cast<char const*>(data); }

void* textData(char const* text) { return const_cast<char*>(text); }

std::string contextOf(ZorIncidentContext const& context) {
    std::string out;
    context.getContextString(out);
    return out;
}

} // namespace

TEST(IncidentContext, FieldsStandInTheirOrder) {
    static_assert(std::has_virtual_destructor_v<ZorIncidentContext>);
    ZorIncidentContext const context("A", nullptr, nullptr);
    auto const offset = [&](void const* field) {
        return static_cast<char const*>(field) - reinterpret_cast<char const*>(&context);
    };
    std::ptrdiff_t const word = sizeof(void*);
    EXPECT_EQ(offset(&context.label), word);
    std::ptrdiff_t const behindLabel = word + static_cast<std::ptrdiff_t>(sizeof(std::string));
    EXPECT_EQ(offset(&context.render), behindLabel);
    EXPECT_EQ(offset(&context.renderData), behindLabel + word);
    EXPECT_EQ(offset(&context.top), behindLabel + 2 * word);
    EXPECT_EQ(offset(&context.outer), behindLabel + 3 * word);
    EXPECT_EQ(offset(&context.inner), behindLabel + 4 * word);
    EXPECT_EQ(offset(&context.maxIncidentSeverity), behindLabel + 5 * word);
}

TEST(IncidentContext, RootBeginsAlone) {
    int data = 0;
    ZorIncidentContext root("A", renderText, &data);
    EXPECT_EQ(root.label, "A");
    EXPECT_EQ(root.render, renderText);
    EXPECT_EQ(root.renderData, &data);
    EXPECT_EQ(root.top, &root);
    EXPECT_EQ(root.outer, nullptr);
    EXPECT_EQ(root.inner, nullptr);
    EXPECT_EQ(root.maxIncidentSeverity, 0);
    EXPECT_EQ(root.getMaxIncidentSeverity(), 0);
}

// The context keeps copies of the labels.
TEST(IncidentContext, LabelsAreCopied) {
    std::string rootLabel = "A";
    std::string frameLabel = "a label that is too long to be stored without a block";
    ZorIncidentContext root(rootLabel, nullptr, nullptr);
    root.push(frameLabel, nullptr, nullptr);
    rootLabel = "changed";
    frameLabel = "changed";
    EXPECT_EQ(contextOf(root), "A{a label that is too long to be stored without a block}");
}

TEST(IncidentContext, PushPutsAFrameOnTop) {
    int data = 0;
    ZorIncidentContext root("A", nullptr, nullptr);
    root.push("B", renderText, &data);
    ZorIncidentContext* const b = root.top;
    EXPECT_NE(b, &root);
    EXPECT_EQ(b->label, "B");
    EXPECT_EQ(b->render, renderText);
    EXPECT_EQ(b->renderData, &data);
    EXPECT_EQ(b->outer, &root);
    EXPECT_EQ(b->inner, nullptr);
    EXPECT_EQ(b->maxIncidentSeverity, 0);
    EXPECT_EQ(root.inner, b);

    root.push("C", nullptr, nullptr);
    ZorIncidentContext* const c = root.top;
    EXPECT_EQ(c->outer, b);
    EXPECT_EQ(c->inner, nullptr);
    EXPECT_EQ(b->inner, c);
    EXPECT_EQ(root.inner, b);
    EXPECT_EQ(root.outer, nullptr);
}

TEST(IncidentContext, PopTakesTheTopFrameAway) {
    ZorIncidentContext root("A", nullptr, nullptr);
    root.push("B", nullptr, nullptr);
    ZorIncidentContext* const b = root.top;
    long const before = liveBlocks();
    root.push("C", nullptr, nullptr);
    root.pop();
    EXPECT_EQ(liveBlocks(), before);
    EXPECT_EQ(root.top, b);
    EXPECT_EQ(b->inner, nullptr);
    root.pop();
    EXPECT_EQ(root.top, &root);
    EXPECT_EQ(root.inner, nullptr);
}

TEST(IncidentContext, PopOfTheRootAloneChangesNothing) {
    ZorIncidentContext root("A", renderText, textData("+"));
    root.setMaxIncidentSeverity(severityWarning);
    root.pop();
    root.pop();
    EXPECT_EQ(root.top, &root);
    EXPECT_EQ(root.inner, nullptr);
    EXPECT_EQ(root.outer, nullptr);
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityWarning);
    EXPECT_EQ(contextOf(root), "A+");
    root.push("B", nullptr, nullptr);
    EXPECT_EQ(contextOf(root), "A+{B}");
}

// Destroying a root destroys the frames that are still pushed.
TEST(IncidentContext, DestructionTakesAllFramesAway) {
    long const before = liveBlocks();
    {
        ZorIncidentContext root("A", nullptr, nullptr);
        long const rootAlone = liveBlocks();
        for (char const* const label : {"B", "C", "D"}) root.push(label, nullptr, nullptr);
        EXPECT_EQ(liveBlocks() - rootAlone, 3);
    }
    EXPECT_EQ(liveBlocks(), before);
}

TEST(IncidentContext, DescribesItsFramesFromOutsideToInside) {
    ZorIncidentContext root("A", nullptr, nullptr);
    EXPECT_EQ(contextOf(root), "A");
    root.push("B", nullptr, nullptr);
    EXPECT_EQ(contextOf(root), "A{B}");
    root.push("C", nullptr, nullptr);
    EXPECT_EQ(contextOf(root), "A{B{C}}");
    root.pop();
    EXPECT_EQ(contextOf(root), "A{B}");
    root.push("D", nullptr, nullptr);
    EXPECT_EQ(contextOf(root), "A{B{D}}");
}

// A frame's dynamic description stands behind its label and before the frames inside.
TEST(IncidentContext, DescriptionsFollowTheirLabels) {
    ZorIncidentContext root("A", renderText, textData("-1"));
    root.push("B", nullptr, textData("unused"));
    root.push("C", renderText, textData("-3"));
    EXPECT_EQ(contextOf(root), "A-1{B{C-3}}");
}

// The description is asked for each time.
TEST(IncidentContext, DescriptionsAreDynamic) {
    char line[] = "7";
    ZorIncidentContext root("line ", renderText, line);
    EXPECT_EQ(contextOf(root), "line 7");
    line[0] = '8';
    EXPECT_EQ(contextOf(root), "line 8");
}

// Called on a frame, only that frame and those pushed on it are described.
TEST(IncidentContext, FrameDescribesWhatIsPushedOnIt) {
    ZorIncidentContext root("A", nullptr, nullptr);
    root.push("B", nullptr, nullptr);
    ZorIncidentContext const* const b = root.top;
    root.push("C", nullptr, nullptr);
    EXPECT_EQ(contextOf(*b), "B{C}");
    EXPECT_EQ(contextOf(*root.top), "C");
}

TEST(IncidentContext, DescriptionIsAppended) {
    ZorIncidentContext root("A", nullptr, nullptr);
    root.push("", nullptr, nullptr);
    std::string out = "before ";
    root.getContextString(out);
    EXPECT_EQ(out, "before A{}");
}

TEST(IncidentContext, ManyFramesNest) {
    ZorIncidentContext root("0", nullptr, nullptr);
    std::string expected = "0";
    for (int i = 1; i <= 1000; ++i) {
        root.push(std::to_string(i), nullptr, nullptr);
        expected += "{" + std::to_string(i);
    }
    EXPECT_EQ(contextOf(root), expected + std::string(1000, '}'));
    for (int i = 0; i < 1000; ++i) root.pop();
    EXPECT_EQ(contextOf(root), "0");
}

// Severities are ordinary numbers of an int; every one can be noted.
TEST(IncidentContext, NotesEverySeverity) {
    static_assert(std::is_same_v<std::underlying_type_t<severity>, int>);
    static_assert(std::is_same_v<std::underlying_type_t<incidentType>, int>);
    ZorIncidentContext root("A", nullptr, nullptr);
    for (int const number : {3, 2, 1, 0, 4, -1, 2147483647, -2147483647 - 1}) {
        root.setMaxIncidentSeverity(static_cast<severity>(number));
        EXPECT_EQ(root.getMaxIncidentSeverity(), number);
        EXPECT_EQ(root.maxIncidentSeverity, number);
    }
}
