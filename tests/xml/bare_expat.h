// What expat itself says about an input, without rules, handlers or incidents.

#pragma once

#include <expat.h>

#include <string>
#include <vector>

// The incident that a parser without a label raises for the last of the pieces, of which `isFinal`
// says whether it ends the input. Empty when expat takes it.
inline std::string complaintOfExpat(std::vector<std::string> const& pieces, bool isFinal) {
    XML_Parser const expat = XML_ParserCreate(nullptr);
    XML_Status status = XML_STATUS_OK;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        bool const isLast = i + 1 == pieces.size();
        status = XML_Parse(expat, pieces[i].data(), static_cast<int>(pieces[i].size()),
                           isFinal && isLast);
        // The parser looks up the position of every error, and that moves it.
        if (status != XML_STATUS_OK && !isLast) XML_GetCurrentColumnNumber(expat);
    }
    std::string complaint;
    if (status != XML_STATUS_OK) {
        complaint = "3 {zor_XMLParse: line " + std::to_string(XML_GetCurrentLineNumber(expat)) +
                    ", column " + std::to_string(XML_GetCurrentColumnNumber(expat)) + " }" +
                    XML_ErrorString(XML_GetErrorCode(expat)) + "\n";
    }
    XML_ParserFree(expat);
    return complaint;
}
