// Raising: the message, the severity that stays behind, the trace profile's word, the logger.

#include "incident/raise.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/incidents.h"
#include "zor/incident.h"
#include "zor/platform.h"

namespace {

// A trace profile that notes what it is asked, installed for the length of a test.
class AskedProfile : public TraceProfile {
public:
    explicit AskedProfile(int answerToAll) : answer(answerToAll), former(TraceProfile::_instance) {
        TraceProfile::_instance = this;
    }
    AskedProfile(AskedProfile const&) = delete;
    AskedProfile& operator=(AskedProfile const&) = delete;
    ~AskedProfile() { TraceProfile::_instance = former; }

    int Get(char const* name, int level, int flag) override {
        asked +=
            std::string(name) + ' ' + std::to_string(level) + ' ' + std::to_string(flag) + '\n';
        return answer;
    }

    std::string takeAsked() {
        std::string taken;
        taken.swap(asked);
        return taken;
    }

    int answer;

private:
    TraceProfile* former;
    std::string asked;
};

// No trace profile for the length of a test.
class NoProfile {
public:
    NoProfile() : former(TraceProfile::_instance) { TraceProfile::_instance = nullptr; }
    NoProfile(NoProfile const&) = delete;
    NoProfile& operator=(NoProfile const&) = delete;
    ~NoProfile() { TraceProfile::_instance = former; }

private:
    TraceProfile* former;
};

void countRendering(std::string& out, void* data) {
    ++*static_cast<int*>(data);
    out += "*";
}

void raiseText(ZorIncidentContext* context, int sev, char const* text) {
    zor_raiseIncident(context, static_cast<severity>(sev), incidentInvalidArgument, 1, text);
}

} // namespace

TEST(Raise, WithoutAContextTheMessageIsTheText) {
    IncidentLog log;
    zor_raiseIncident(nullptr, severityError, incidentInvalidArgument, 1,
                      "xpath must not be empty");
    EXPECT_EQ(log.take(), "3 xpath must not be empty\n");
}

// The pieces are joined as they stand, without blanks.
TEST(Raise, JoinsThePiecesWithoutBlanks) {
    IncidentLog log;
    zor_raiseIncident(nullptr, severityError, incidentInvalidArgument, 3,
                      "ZorCollection::makeSchema{Schema (", "phone", ") already exists}");
    EXPECT_EQ(log.take(), "3 ZorCollection::makeSchema{Schema (phone) already exists}\n");
}

TEST(Raise, CountSaysHowManyPiecesThereAre) {
    IncidentLog log;
    raiseText(nullptr, 2, "");
    zor_raiseIncident(nullptr, severityWarning, incidentNotFound, 0, "a");
    zor_raiseIncident(nullptr, severityWarning, incidentNotFound, 1, "a", "b", "c");
    zor_raiseIncident(nullptr, severityWarning, incidentNotFound, 2, "a", "b", "c");
    zor_raiseIncident(nullptr, severityWarning, incidentNotFound, 7, "a", "b", "", "c", " ", "d",
                      "e");
    EXPECT_EQ(log.take(), "2 \n2 \n2 a\n2 ab\n2 abc de\n");
}

TEST(Raise, NullPiecesAddNothing) {
    IncidentLog log;
    char const* const nothing = nullptr;
    zor_raiseIncident(nullptr, severityError, incidentNotFound, 3, "a", nothing, "b");
    zor_raiseIncident(nullptr, severityError, incidentNotFound, 2, nothing, "b");
    EXPECT_EQ(log.take(), "3 ab\n3 b\n");
}

// The context stands before the pieces, from the frame that is passed to the innermost.
TEST(Raise, BeginsWithTheContext) {
    IncidentLog log;
    ZorIncidentContext root("A", nullptr, nullptr);
    raiseText(&root, 3, ": text");
    root.push("B", nullptr, nullptr);
    root.push("C", nullptr, nullptr);
    raiseText(&root, 3, ": text");
    raiseText(root.inner, 3, ": text");
    zor_raiseIncident(&root, severityError, incidentNotFound, 0, nullptr);
    EXPECT_EQ(log.take(), "3 A: text\n3 A{B{C}}: text\n3 B{C}: text\n3 A{B{C}}\n");
}

TEST(Raise, PassesTheSeverityOn) {
    IncidentLog log;
    for (int const number : {2, 3, 0, 1, 4, -1, 1000}) raiseText(nullptr, number, "text");
    EXPECT_EQ(log.take(), "2 text\n3 text\n0 text\n1 text\n4 text\n-1 text\n1000 text\n");
}

// Neither the message nor the logger shows the type.
TEST(Raise, DoesNotShowTheType) {
    IncidentLog log;
    for (int const number : {1, 2, 3, 4, 5, 0, 77}) {
        zor_raiseIncident(nullptr, severityError, static_cast<incidentType>(number), 1, "text");
        EXPECT_EQ(log.take(), "3 text\n") << "type " << number;
    }
}

// What stays behind is the last severity, even when it is lower than one before.
TEST(Raise, LeavesTheLastSeverityInTheContext) {
    IncidentLog log;
    ZorIncidentContext root("A ", nullptr, nullptr);
    raiseText(&root, 2, "warning");
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityWarning);
    raiseText(&root, 1, "trace");
    EXPECT_EQ(root.getMaxIncidentSeverity(), 1);
    raiseText(&root, 3, "error");
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityError);
    raiseText(&root, 0, "trace");
    EXPECT_EQ(root.getMaxIncidentSeverity(), 0);
    EXPECT_EQ(log.take(), "2 A warning\n1 A trace\n3 A error\n0 A trace\n");
}

// Frames pushed and popped in between do not touch it.
TEST(Raise, SeverityBelongsToTheRoot) {
    IncidentLog log;
    ZorIncidentContext root("A", nullptr, nullptr);
    root.push("B", nullptr, nullptr);
    raiseText(&root, 3, "");
    EXPECT_EQ(root.top->maxIncidentSeverity, 0);
    root.pop();
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityError);
    EXPECT_EQ(log.take(), "3 A{B}\n");
}

// Warnings are asked for at level 3, errors at 2, everything else at 6.
TEST(Raise, AsksTheTraceProfileForTheLevel) {
    struct {
        int severityNumber;
        char const* asked;
    } const cases[] = {
        {2, "ManageableData 3 0\n"},  {3, "ManageableData 2 0\n"},    {0, "ManageableData 6 0\n"},
        {1, "ManageableData 6 0\n"},  {4, "ManageableData 6 0\n"},    {5, "ManageableData 6 0\n"},
        {-1, "ManageableData 6 0\n"}, {1000, "ManageableData 6 0\n"},
    };
    IncidentLog log;
    AskedProfile profile(1);
    for (auto const& c : cases) {
        raiseText(nullptr, c.severityNumber, "text");
        EXPECT_EQ(profile.takeAsked(), c.asked) << "severity " << c.severityNumber;
        EXPECT_EQ(log.take(), std::to_string(c.severityNumber) + " text\n");
    }
}

// Any answer but 0 lets the incident through.
TEST(Raise, LetsThroughWhatTheProfileAdmits) {
    IncidentLog log;
    for (int const answer : {1, 7, -1}) {
        AskedProfile const profile(answer);
        raiseText(nullptr, 3, "text");
        EXPECT_EQ(log.take(), "3 text\n") << "answer " << answer;
    }
}

// What is filtered makes no message, but its severity is noted.
TEST(Raise, FilteredIncidentsOnlyLeaveTheirSeverity) {
    IncidentLog log;
    AskedProfile profile(0);
    int renderings = 0;
    ZorIncidentContext root("A", countRendering, &renderings);
    for (int const number : {2, 3, 1}) {
        raiseText(&root, number, "text");
        EXPECT_EQ(root.getMaxIncidentSeverity(), number);
    }
    EXPECT_EQ(profile.takeAsked(), "ManageableData 3 0\nManageableData 2 0\nManageableData 6 0\n");
    EXPECT_EQ(renderings, 0);
    EXPECT_EQ(log.take(), "");

    profile.answer = 1;
    raiseText(&root, 3, "text");
    EXPECT_EQ(log.take(), "3 A*text\n");
    EXPECT_EQ(renderings, 1);
}

// A profile may admit some levels only.
TEST(Raise, ProfileDecidesByLevel) {
    class ErrorsOnly : public AskedProfile {
    public:
        ErrorsOnly() : AskedProfile(1) {}
        int Get(char const* name, int level, int flag) override {
            return AskedProfile::Get(name, level, flag) != 0 && level == 2;
        }
    };
    IncidentLog log;
    ErrorsOnly const profile;
    for (int const number : {1, 2, 3, 4}) raiseText(nullptr, number, "text");
    EXPECT_EQ(log.take(), "3 text\n");
}

TEST(Raise, WithoutAProfileNothingIsLogged) {
    IncidentLog log;
    int renderings = 0;
    ZorIncidentContext root("A", countRendering, &renderings);
    {
        NoProfile const none;
        raiseText(&root, 3, "text");
        raiseText(nullptr, 3, "text");
    }
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityError);
    EXPECT_EQ(renderings, 0);
    EXPECT_EQ(log.take(), "");
    raiseText(nullptr, 3, "again");
    EXPECT_EQ(log.take(), "3 again\n");
}

// Without a logging function all incidents are silent; the profile is asked before.
TEST(Raise, WithoutALoggerNothingIsLogged) {
    IncidentLog log;
    AskedProfile profile(1);
    int renderings = 0;
    ZorIncidentContext root("A", countRendering, &renderings);
    zor_setLoggingFunction(nullptr);
    testing::internal::CaptureStdout();
    raiseText(&root, 3, "text");
    raiseText(nullptr, 2, "text");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityError);
    EXPECT_EQ(profile.takeAsked(), "ManageableData 2 0\nManageableData 3 0\n");
    EXPECT_EQ(renderings, 0);
    EXPECT_EQ(log.take(), "");
}

// The message is the logger's to change; the next incident begins anew.
TEST(Raise, LoggerMayChangeTheMessage) {
    IncidentLog log;
    static std::string heard;
    zor_setLoggingFunction([](severity, std::string& message) {
        message += "!";
        heard += message;
    });
    ZorIncidentContext root("A ", nullptr, nullptr);
    raiseText(&root, 3, "one");
    raiseText(&root, 3, "two");
    EXPECT_EQ(heard, "A one!A two!");
    EXPECT_EQ(root.label, "A ");
    EXPECT_EQ(log.take(), "");
    std::string().swap(heard); // gives its block back
}

// The severity is noted before the logger is called.
TEST(Raise, LoggerSeesTheSeverityInTheContext) {
    IncidentLog log;
    static ZorIncidentContext* watched;
    static severity seen;
    ZorIncidentContext root("A", nullptr, nullptr);
    watched = &root;
    zor_setLoggingFunction(
        [](severity, std::string&) { seen = watched->getMaxIncidentSeverity(); });
    raiseText(&root, 3, "text");
    EXPECT_EQ(seen, severityError);
}

// A logger may raise on its own account.
TEST(Raise, LoggerMayRaise) {
    IncidentLog log;
    static std::string heard;
    zor_setLoggingFunction([](severity sev, std::string& message) {
        heard += message + ' ';
        if (sev == severityError) raiseText(nullptr, 2, "inner");
        heard += message + '.';
    });
    raiseText(nullptr, 3, "outer");
    EXPECT_EQ(heard, "outer inner inner.outer.");
    std::string().swap(heard); // gives its block back
}

TEST(Raise, LibrarysOwnFormsCountTheirPieces) {
    IncidentLog log;
    ZorIncidentContext root("A", nullptr, nullptr);
    zor_internal::raiseError(&root, incidentNotFound, "{", "b", "}");
    zor_internal::raiseError(nullptr, incidentNotFound, "text");
    zor_internal::raise(&root, severityWarning, incidentNotFound, " one", " two");
    EXPECT_EQ(log.take(), "3 A{b}\n3 text\n2 A one two\n");
    EXPECT_EQ(root.getMaxIncidentSeverity(), severityWarning);
}
