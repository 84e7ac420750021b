// The same text whole and in pieces: the same incidents, the same export. Only expat's own
// complaint may be another one, because a token that is cut is complained about elsewhere than a
// whole one; it is what expat says when it is alone with the pieces.
//
// Input: the text, and behind a line "==" the lengths of the pieces, a character each: "0" is an
// empty piece, "1" one byte, "A" 17 and so on, over and over. Without lengths, every byte comes
// alone. An odd number of lengths has the last call bring the end alone.

#include <expat.h>

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/proportion.h"
#include "fuzz/support/round_trip.h"
#include "fuzz/support/target.h"
#include "tests/xml/bare_expat.h"

namespace {

// A collection and what its import said.
class Import {
public:
    explicit Import(IncidentLog& incidentLog)
        : log(incidentLog), collection(kStoreName), context("", nullptr, nullptr),
          parser(&collection, &context) {}

    // A broken input is not continued: it would repeat its complaint for every further piece.
    bool isBroken() const { return XML_GetErrorCode(parser.expatParser) != XML_ERROR_NONE; }

    // The library itself stopped expat, which has no complaint then.
    bool isRefused() const { return XML_GetErrorCode(parser.expatParser) == XML_ERROR_ABORTED; }

    void parse(std::string const& piece, bool isFinal) {
        if (isBroken()) return;
        pieces.push_back(piece);
        ended = isFinal;
        parser.parse(piece.data(), static_cast<int>(piece.size()), isFinal);
    }

    // Those of the import, without expat's complaint.
    std::string incidents() {
        std::string text = log.take();
        if (isRefused()) return text;
        std::string const complaint = complaintOfExpat(pieces, ended);
        check(complaint.empty() != isBroken(), "an input is broken when expat says so");
        if (text.size() < complaint.size()) check(false, "expat's complaint is an incident");
        std::size_t const size = text.size() - complaint.size();
        checkSame(text.substr(size), complaint, "expat's complaint is the last incident");
        text.resize(size);
        return text;
    }
    std::string content() { return collection.exportAll(); }

private:
    IncidentLog& log;
    std::vector<std::string> pieces;
    bool ended = false;
    ZorCollection collection;
    ZorIncidentContext context;
    ZorXmlParser parser;
};

std::size_t lengthIn(char code) { return static_cast<unsigned char>(code - '0'); }

void parseInPieces(Import& import, std::string const& text, std::string lengths) {
    if (lengths.find_first_not_of('0') == std::string::npos) lengths += '1'; // to come forward
    bool const endAlone = lengths.size() % 2 == 1;
    std::size_t at = 0;
    for (std::size_t i = 0; at < text.size(); ++i) {
        std::string const piece = text.substr(at, lengthIn(lengths[i % lengths.size()]));
        at += piece.size();
        import.parse(piece, at == text.size() && !endAlone);
    }
    if (endAlone || text.empty()) import.parse("", true);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::vector<std::string> const parts = partsOf(data, size, 2);
    if (asksForVeryMuch(parts[0])) return 0;
    NoLeftovers const nothing;
    IncidentLog log;
    Import whole(log);
    whole.parse(parts[0], true);
    std::string const incidents = whole.incidents();
    Import cut(log);
    parseInPieces(cut, parts[0], parts[1]);
    checkSame(cut.incidents(), incidents, "pieces give the incidents of the whole");
    checkSame(cut.content(), whole.content(), "pieces give the content of the whole");
    return 0;
}
