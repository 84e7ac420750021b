// A small telephone that has everything: every type, choices and ranges, branches within branches
// that repeat, collections within collections, comments, CDATA and entities of every kind.
//
// Its documents set every value there is. So nothing of what an earlier import put into them is
// left after they were imported again.

#pragma once

#include <string>

namespace small_phone {

// The text of a file with that content of the root element.
inline std::string fileOf(std::string const& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE desk [<!ENTITY who \"Zo&#235;\"><!-- inside -->]>\n"
           "<desk><!-- a <telephone> & more -->\n" +
           content + "</desk>\n";
}

constexpr char kDefinition[] =
    "<schema name=\"set\">\n"
    "<choice name=\"codec\"><option>PCMU</option><option> G722 </option></choice>\n"
    "<range name=\"level\" baseType=\"int\" minValue=\"-3\" maxValue=\"15\"/>\n"
    "<range name='group' baseType='ip_address' minValue='239.0.0.0' maxValue='239.9.0.0'/>\n"
    "<item name=\"tag\" type=\"string\" default=\"R&amp;D &#x34;1\"/>\n"
    "<item name=\"drift\" type=\"int\" default=\"-1\"/>\n"
    "<item name=\"timer\" type=\"uint\"/>\n"
    "<item name=\"on\" type=\"bool\" default=\"true\"/>\n"
    "<item name=\"gain\" type=\"float\" default=\"0.5\"/>\n"
    "<item name=\"dial\" type=\"digit_string\" occurrences=\"2\"/>\n"
    "<item name=\"ip\" type=\"ip_address\"/>\n"
    "<item name=\"mask\" type=\"ip_mask\" default=\"255.0.0.0\"/>\n"
    "<item name=\"host\" type=\"domain_name\"/>\n"
    "<item name=\"at\" type=\"url\"></item>\n"
    "<item name=\"volume\" type=\"level\" default=\"3\"/>\n"
    "<item name=\"group\" type=\"group\"/>\n"
    "<branch name=\"line\" occurrences=\"2\"/>\n"
    "<item name=\"codec\" type=\"codec\" default=\"G722\" parent=\"line\"/>\n"
    "<branch name=\" key \" occurrences=\"2\" parent=\"/line\"/>\n"
    "<item name=\"label\" type=\"string\" parent=\"/line/key\"/>\n"
    "</schema>\n"
    "<collection name=\"site\"><collection name=\"room\">\n"
    "<schema name=\"door\"><item name=\"lock\" type=\"bool\"/></schema>\n"
    "</collection></collection>\n";

constexpr char kDocuments[] =
    "<document name=\"one\" schema=\"set\">\n"
    "<tag><![CDATA[<b>]]> &amp; &who;</tag><drift>-7</drift><timer>4000000000</timer>\n"
    "<on>false</on><gain>2.25</gain><dial>112</dial><dial>+1 9#*</dial><ip>192.0.2.7</ip>\n"
    "<mask>255.255.128.0</mask><host>a.example</host><at>sip:a@b?x=1&amp;y=2</at>\n"
    "<volume>15</volume><group>239.1.2.3</group>\n"
    "<line occurrence=\"2\"><codec>PCMU</codec>\n"
    "<key><label>&lt;&gt;&quot;&apos;</label></key><key><label>4</label></key></line>\n"
    "<line occurrence=\"1\"><codec>G722</codec>\n"
    "<key><label>\"\"</label></key><key occurrence='2'><label>2<!-- two --></label></key></line>\n"
    "</document>\n"
    "<document name=\"note\"><itemValue>&#x41;\n</itemValue></document>\n"
    "<collection name=\"site\"><collection name=\"room\">\n"
    "<document name=\"front\" schema=\"door\"><lock>true</lock></document>\n"
    "</collection></collection>\n";

// What a collection "desk" holds then, as contentOf says it (tests/collection/import_store.h).
constexpr char kContent[] =
    "desk(schema set ["
    "<choice name=\"codec\"><option>PCMU</option><option>G722</option></choice>"
    "<range name=\"level\" baseType=\"int\" minValue=\"-3\" maxValue=\"15\"/>"
    "<range name=\"group\" baseType=\"ip_address\" minValue=\"239.0.0.0\" maxValue=\"239.9.0.0\"/>"
    "] tag:string=R&D 41 drift:int=-1 timer:uint on:bool=true gain:float=0.5 dial*2:digit_string "
    "ip:ip_address mask:ip_mask=255.0.0.0 host:domain_name at:url volume:level=3 group:group "
    "line*2{codec:codec=G722 key*2{label:string}}\n"
    "schema DefaultSchema [] itemValue:string=\n"
    "document one of set tag=<b> & Zo\u00EB* drift=-7* timer=4000000000* on=false* gain=2.25* "
    "dial=112*|+1 9#** ip=192.0.2.7* mask=255.255.128.0* host=a.example* at=sip:a@b?x=1&y=2* "
    "volume=15* group=239.1.2.3* line/codec=G722*|PCMU* line/key/label=*|2*|<>\"'*|4*\n"
    "document note of DefaultSchema itemValue=A\n*\n"
    "site(schema DefaultSchema [] itemValue:string=\n"
    "room(schema DefaultSchema [] itemValue:string=\n"
    "schema door [] lock:bool\n"
    "document front of door lock=true*\n)))";

} // namespace small_phone
