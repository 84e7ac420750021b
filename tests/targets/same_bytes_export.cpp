// The example's telephone with values that were set in every way, exported.

#include <cfloat>
#include <climits>
#include <memory>

#include "tests/targets/same_bytes.h"

namespace same_bytes {
namespace {

// Sets every value that a path selects.
class Setter {
public:
    explicit Setter(ZorDocument* changed) : document(changed) {}

    void text(char const* path, char const* value) const {
        each(path, [=](ZorResultSet& found) { found.setValue(value); });
    }
    void integer(char const* path, long value) const {
        each(path, [=](ZorResultSet& found) { found.setIntValue(value); });
    }
    void natural(char const* path, unsigned long value) const {
        each(path, [=](ZorResultSet& found) { found.setUIntValue(value); });
    }
    void real(char const* path, double value) const {
        each(path, [=](ZorResultSet& found) { found.setFloatValue(value); });
    }
    void restore(char const* path) const {
        each(path, [](ZorResultSet& found) { found.restoreDefault(); });
    }

private:
    template <typename Change>
    void each(char const* path, Change const& change) const {
        std::unique_ptr<ZorResultSet> const found(document->select(path));
        // A path that selects nothing is reported, and the program fails.
        if (found->eof()) change(*found);
        for (; !found->eof(); found->next()) change(*found);
    }

    ZorDocument* document;
};

void changeTexts(ZorDocument* phone) {
    Setter const set(phone);
    set.text("model", "Desk <48> & \"more\" 'quotes'");
    set.text("assetTag", "\xC3\x85ngstr\xC3\xB6m \xFF\x80\x7F");
    set.text("emergencyNumber[3]", "+1 #*");
    set.text("network/hostName", "a name of more than thirty-two characters.example.com");
    set.text("network/ipv4/mode", "auto");
    set.text("network/ipv4/address", "255.254.253.252");
    set.text("network/ipv4/mask", "255.255.255.254");
    set.text("network/ipv4/route[2]/gateway", "0.0.0.1");
    set.text("network/dns/server", "128.0.0.255");
    set.text("network/ntp/utcOffset", "-00720");
    set.text("provisioning/fallbackUrl[2]", "");
    set.text("clockDrift", "+0002147483647");
    set.text("sip/sessionTimer", "4294967295");
    set.text("calls/waiting", "false");
    set.text("temperatureLimit", "0x1.8p1");
    set.text("audio/equaliser[2]/band", "-12.5");
    set.text("lineKey[48]/lamp[2]/brightness", "100");
    set.text("paging[10]/address", "239.255.255.255");
    set.text("account[8]/codec[5]/name", "opus");
    set.text("account[7]/user", nullptr);
    set.text("logging/level", "debug");
    set.restore("display/*");
    set.restore("account[2]/proxy/*");
}

void changeNumbers(ZorDocument* phone) {
    Setter const set(phone);
    set.integer("clockDrift", INT_MIN);
    set.integer("audio/handsetVolume", 15);
    set.integer("network/discovery", -7); // not zero is true
    set.natural("calls/doNotDisturb", 0x80000000UL);
    set.natural("network/ipv4/gateway", 0xC0000201UL);
    set.natural("access/allowed/mask", 0xFFFFFFFEUL);
    set.natural("ringer[9]/cadence", 4294967295UL);
    set.natural("sip/port", 65535);
    set.real("audio/sidetone", -1.0 / 3.0);
    set.real("audio/equaliser/band[1]", 12.5);
    set.real("audio/equaliser/band[2]", 1e-300 * 1e-20); // a subnormal
    set.real("audio/equaliser[3]/band[3]", -0.0);
    set.real("temperatureLimit", DBL_MAX);
    set.real("ringer/tempo", 0.1 + 1.2);
}

// The text with a line break between elements, where the store writes nothing. A ">" of a value is
// escaped.
std::string elementPerLine(std::string const& xml) {
    std::string out;
    for (char const c : xml) {
        if (c == '<' && !out.empty() && out.back() == '>') out += '\n';
        out += c;
    }
    return out + '\n';
}

} // namespace

std::string exportedStore() {
    ZorCollection store("deskphone");
    importDeskPhone(store);
    changeTexts(store.getDocument("phone1"));
    changeNumbers(store.makeDocument("phone", "phone2"));
    changeTexts(store.makeDocument("phone", "phone3"));
    changeNumbers(store.getDocument("phone3"));
    store.getDocument("phone3")->restoreDefaults();

    ZorCollection* const building = store.makeCollection("second building");
    building->copySchema("directory", store.getSchema("directory"));
    ZorDocument* const entries = building->makeDocument("directory", "staff");
    Setter(entries).text("entry[500]/number[3]", "*9");
    Setter(entries).text("entry[3]/name", "\x01\x1F<\xE2\x82\xAC>");
    building->makeDocument("DefaultSchema", "untouched");
    return elementPerLine(store.exportAll());
}

} // namespace same_bytes
