// A host program: builds a store in memory, finds values by path, changes them, writes them as XML,
// and sees every incident in a logging function of its own.
//
//     cmake -S examples/embed -B build-embed -DCMAKE_PREFIX_PATH=/where/zor/is/installed
//     cmake --build build-embed && build-embed/embed

#include <zor/zor.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

void logIncident(severity sev, std::string& message) {
    std::printf("[%s] %s\n", sev >= severityError ? "error" : "note", message.c_str());
}

// The shape of the data: a volume between 0 and 10, and four keys with a label each.
void makePhoneSchema(ZorCollection& store) {
    ZorSchema* const schema = store.makeSchema("phone");
    ZorDataType* const volume = zor_rangeMake(ZorBuiltIn::getDataType("int"), "volume", "0", "10");
    schema->addDataType(volume); // the schema owns the type from now on
    schema->makeDataNode(schema->getRootNode(), "ringerVolume", 1, volume, "5");
    ZorSchemaNode* const key = schema->makeBranchNode(schema->getRootNode(), "lineKey", 4);
    schema->makeDataNode(key, "label", 1, schema->getDataType("string"), "");
}

std::unique_ptr<ZorResultSet> select(ZorDocument* document, char const* path) {
    return std::unique_ptr<ZorResultSet>(document->select(path));
}

} // namespace

int main() {
    zor_setLoggingFunction(logIncident);
    {
        ZorCollection store("desk");
        makePhoneSchema(store);
        ZorDocument* const phone = store.makeDocument("phone", "phone1"); // the store owns it

        auto const labels = select(phone, "lineKey/label");
        for (int line = 1; !labels->eof(); labels->next()) {
            labels->setValue(("Line " + std::to_string(line++)).c_str());
        }

        auto const volume = select(phone, "ringerVolume");
        std::printf("volume is %ld\n", volume->getIntValue(nullptr));
        volume->setIntValue(8);
        volume->setIntValue(11); // refused, and reported to the logging function
        std::printf("volume is %ld\n", volume->getIntValue(nullptr));

        std::printf("%s\n", store.exportAllDocuments().c_str());
    }
    ZorBuiltIn::deleteBuiltInTypes(); // a host that shuts down may give the types back
    return 0;
}
