#include "fuzz/support/rich_store.h"

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"

namespace {

constexpr char kStore[] =
    "<phone><schema name='rich'>"
    "<choice name='colour'><option>off</option><option>red</option></choice>"
    "<range name='volume' baseType='int' minValue='0' maxValue='10'/>"
    "<item name='name' type='string' default='top'/>"
    "<item name='volume' type='volume' default='5'/>"
    "<item name='number' type='digit_string' occurrences='3'/>"
    "<branch name='line' occurrences='3'/>"
    "<item name='name' type='string' default='a line' parent='/line'/>"
    "<branch name='key' occurrences='2' parent='/line'/>"
    "<item name='name' type='string' parent='/line/key'/>"
    "<item name='colour' type='colour' occurrences='2' default='red' parent='/line/key'/>"
    "<branch name='line' parent='/line/key'/>"
    "<item name='key' type='uint' default='7' parent='/line/key/line'/>"
    "<branch name='keys' parent='/line'/>"
    "<item name='gain' type='float' default='0.5' parent='/line/keys'/>"
    "<branch name='key' occurrences='2'/>"
    "<item name='on' type='bool' default='true' parent='/key'/>"
    "<item name='address' type='ip_address' parent='/key'/>"
    "<branch name='empty' occurrences='2'/>"
    "<branch name='empty' occurrences='2' parent='/empty'/>"
    "<branch name='*star'/><item name='name' type='url' parent='/*star'/>"
    "<branch name='two words'/><item name='a]b' type='domain_name' parent='/two words'/>"
    "<item name='a/b' type='ip_mask' parent='/two words'/>"
    "<item name='a[1]' type='int' parent='/two words'/>"
    "</schema>"
    "<document name='rich' schema='rich'><number>112</number><number occurrence='3'>999</number>"
    "<line><key><name>first</name></key></line>"
    "<line occurrence='3'><key occurrence='2'><line><key>8</key></line></key></line>"
    "<key><on>false</on><address>192.0.2.1</address></key></document></phone>";

} // namespace

RichStore::RichStore() : collection("phone"), document(nullptr), root(nullptr) {
    IncidentLog log;
    collection.importXML(kStore);
    checkSame(log.take(), "", "the rich store is correct");
    document = collection.getDocument("rich");
    check(document != nullptr, "the rich store has its document");
    root = document->getRootNode();
}
