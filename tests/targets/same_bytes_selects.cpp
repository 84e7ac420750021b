// What paths select: every form of a step, well written and not.

#include <memory>

#include "tests/support/text.h"
#include "tests/targets/same_bytes.h"

namespace same_bytes {
namespace {

char const* const kPhonePaths[] = {
    // Plain steps, and what may stand before and behind them.
    "model",
    "/model",
    "//model",
    "///model",
    "model/",
    "model//",
    "/",
    "//",
    "",
    " model",
    "model ",
    "Model",
    "mode",
    "network/ipv4/address",
    "/network/ipv4/address",
    "network/ipv4/address/more",
    "network",
    "lineKey[3]",
    "network/ipv4/route/metric",
    "emergencyNumber",
    "display/idleText",
    // Predicates.
    "emergencyNumber[1]",
    "emergencyNumber[4]",
    "emergencyNumber[5]",
    "emergencyNumber[0]",
    "emergencyNumber[]",
    "emergencyNumber[ ]",
    "emergencyNumber[x]",
    "emergencyNumber[2x]",
    "emergencyNumber[ 2 ]",
    "emergencyNumber[\t2\n]",
    "emergencyNumber[2 x]",
    "emergencyNumber[+2]",
    "emergencyNumber[-2]",
    "emergencyNumber[2",
    "emergencyNumber[2]x",
    "emergencyNumber[2][3]",
    "emergencyNumber]2[",
    "emergencyNumber[0002]",
    "[2]",
    "lineKey[9]/lamp/colour",
    "lineKey[9]/lamp[2]/colour",
    "lineKey[9]lamp[2]colour",
    "lineKey[48]/lamp[3]/pattern",
    "lineKey[49]/label",
    "account[6]/codec/name",
    "account[1]/codec[2]",
    "account/proxy[2]/port",
    "audio/equaliser[3]/band[5]",
    "audio/equaliser/band[5]",
    "ringer[9]/cadence[2]",
    // Numbers that 16, 32 or 64 bits do not hold.
    "emergencyNumber[65537]",
    "emergencyNumber[2147483647]",
    "emergencyNumber[2147483648]",
    "emergencyNumber[4294967295]",
    "emergencyNumber[4294967296]",
    "emergencyNumber[4294967297]",
    "emergencyNumber[18446744073709551617]",
    "emergencyNumber[99999999999999999999999999]",
    // Wildcards and descendants.
    "*",
    "/*",
    "*x",
    "network/*",
    "network/*/server",
    "*/port",
    "*/*/port",
    "//port",
    "//server",
    "network//server",
    "network//*",
    "*//colour[1]",
    "account[2]//port",
    "account//port[2]",
    "//codec[5]/name",
    "//proxy/*",
    "//idleText[2]",
    "//lamp[4]",
    "*[2]/label",
    "lineKey[2]/*",
    "lineKey[2]//*",
    "network/ipv4//gateway",
    "sip/*[1]",
    "sip/*[2]",
    "//band//*",
    "*/",
    // As many steps as there may be, and one more.
    "*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*",
    "*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*/*",
    // Bytes beyond ASCII and white space in names.
    "\xC3\xA9",
    "\xFFmodel",
    "emergencyNumber[\2402]",
    "emergencyNumber[\v2\f]",
};

char const* const kDirectoryPaths[] = {
    "entry[6]/number", "entry[12]/number[1]", "entry[500]//*",
    "*[501]",          "//number[3]",         "*/favourite[2]",
};

std::string lineOf(ZorResultSet& found) {
    ZorResultPointer const& result = *found.results[found.cursor];
    std::string line = "  " + quoted(found.getNodeName()) + " occurrence " +
                       std::to_string(found.getOccurrence()) + " flat " +
                       std::to_string(result.flat);
    if (found.getDefinition()->isDataNode()) {
        line += " value " + quotedAndReleased(found.getValue());
        line += found.wasChanged() ? " changed" : " unchanged";
    }
    return line + '\n';
}

// The path is a ZorString, because plain text must not begin with the byte 0xFF.
std::string resultsOf(ZorDocument* document, char const* path) {
    std::unique_ptr<ZorResultSet> const found(document->select(Text(path)));
    std::string lines = std::string(document->getName()) + ' ' + quoted(path) + ": " +
                        std::to_string(found->getResultCount()) + '\n';
    for (; !found->eof(); found->next()) lines += lineOf(*found);
    return lines;
}

} // namespace

std::string selectResults() {
    ZorCollection store("deskphone");
    importDeskPhone(store);
    std::string lines;
    for (char const* const path : kPhonePaths)
        lines += resultsOf(store.getDocument("phone1"), path);
    for (char const* const path : kDirectoryPaths) {
        lines += resultsOf(store.getDocument("directory"), path);
    }
    for (char const* const path : {"itemValue", "*", "//*", "item"}) {
        lines += resultsOf(store.getDocument("note"), path);
    }
    return lines;
}

} // namespace same_bytes
