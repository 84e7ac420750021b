// Files that cannot be read, that change while they are read, and devices that give what they have
// bit by bit or fail. Whatever comes, it is reported, and what was imported before stays.

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include "tests/collection/import_store.h"
#include "tests/hostile/flood.h"
#include "zor/collection.h"

namespace {

// A schema and a document that are complete before the warning about "x", and lines of blanks up to
// beyond two pieces of 4096 bytes each; then another document.
std::string const kHead =
    "<phone><schema name='s'><item name='i' type='int'/></schema>"
    "<document name='d' schema='s'><i>7</i></document>\n<schema name='t' x=''/>\n";
std::string const kText = kHead + std::string(9000, ' ') +
                          "\n<document name='e' schema='s'><i>8</i></document>\n</phone>\n";
constexpr char kWarning[] = "attribute not valid in this context (x)";
constexpr std::size_t kPiece = 4096;

class HostileFile : public testing::Test {
protected:
    HostileFile() {
        std::string pattern = testing::TempDir() + "zor-hostile-XXXXXX";
        directory = mkdtemp(pattern.data());
        EXPECT_EQ(chmod(directory.c_str(), 0755), 0);
        collection.importXML("<phone><schema name='kept'><item name='i' type='int'/></schema>"
                             "<document name='kept' schema='kept'><i>5</i></document></phone>");
    }
    ~HostileFile() override { std::filesystem::remove_all(directory); }

    std::string pathOf(char const* name) const { return directory / name; }

    std::string write(char const* name, std::string const& content) const {
        std::ofstream(pathOf(name), std::ios::binary) << content;
        return pathOf(name);
    }

    // The incidents of importing the file, "@" in the place of its context.
    std::string import(std::string const& path) {
        IncidentLog log;
        collection.importFromFile(path.c_str());
        std::string incidents = log.take();
        std::string const context = "ZorCollection::importFromFile:" + path;
        for (std::size_t at; (at = incidents.find(context)) != std::string::npos;) {
            incidents.replace(at, context.size(), "@");
        }
        return incidents;
    }

    // Imports a file of that text, which raises the warning about "x" in its first piece; just then
    // the file is changed. Expects the other incident, if there is any.
    void importWhile(std::string const& text, std::string const& other,
                     std::function<void(std::string const& path)> const& change) {
        std::string const path = write("changing.xml", text);
        std::string const context = "ZorCollection::importFromFile:" + path;
        IncidentStream incidents([&](long i) {
            if (i == 0) change(path);
            std::string line = i == 0 ? incident(2, 2, 0, kWarning) : other;
            return line.replace(line.find('@'), 1, context);
        });
        collection.importFromFile(path.c_str());
        EXPECT_EQ(incidents.difference(), "");
        EXPECT_EQ(incidents.count(), other.empty() ? 1 : 2);
    }

    static std::string incident(int severity, int line, int column, std::string const& text) {
        return std::to_string(severity) + " @" + atPosition(line, column) + text + '\n';
    }

    // "d" and "e" are those that the text fills.
    std::string values(char const* document) { return valuesOf(collection.getDocument(document)); }

    // A correct file is imported as ever, and what was there before is still there.
    void expectRecovery() {
        EXPECT_EQ(values("kept"), "i=5*");
        collection.deleteSchema("s");
        collection.deleteSchema("t");
        EXPECT_EQ(import(write("correct.xml", kText)), incident(2, 2, 0, kWarning));
        EXPECT_EQ(values("d"), "i=7*");
        EXPECT_EQ(values("e"), "i=8*");
        EXPECT_EQ(values("kept"), "i=5*");
    }

    std::filesystem::path directory;
    ZorCollection collection{"phone"};
};

// The rights of nobody in particular, as long as this lives: root may read everything.
class Unprivileged {
public:
    Unprivileged() : wasRoot(geteuid() == 0) {
        if (!wasRoot) return;
        EXPECT_EQ(seteuid(65534), 0);
    }
    Unprivileged(Unprivileged const&) = delete;
    Unprivileged& operator=(Unprivileged const&) = delete;
    ~Unprivileged() {
        if (!wasRoot) return;
        EXPECT_EQ(seteuid(0), 0);
    }

private:
    bool wasRoot;
};

// A named pipe, and a thread that writes to it.
class Device {
public:
    Device(std::string const& path, std::function<void(int descriptor)> const& write) {
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0) << path;
        writer = std::thread([path, write] {
            std::FILE* const file = std::fopen(path.c_str(), "w"); // waits for the reader
            write(fileno(file));
            std::fclose(file);
        });
    }
    Device(Device const&) = delete;
    Device& operator=(Device const&) = delete;
    ~Device() { writer.join(); }

private:
    std::thread writer;
};

} // namespace

TEST_F(HostileFile, WithoutPermissionIsNotFound) {
    std::string const path = write("secret.xml", kText);
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    {
        Unprivileged const nobody;
        EXPECT_EQ(import(path), plainError("File: \"" + path + "\" not found."));
    }
    EXPECT_EQ(collection.getSchema("s"), nullptr);
    expectRecovery();
}

// Paths that lead nowhere.
TEST_F(HostileFile, ThatCannotBeOpenedIsNotFound) {
    std::string const file = write("file.xml", kText);
    std::string const loop = pathOf("loop.xml");
    ASSERT_EQ(symlink(loop.c_str(), loop.c_str()), 0);
    std::string const dangling = pathOf("dangling.xml");
    ASSERT_EQ(symlink("nowhere.xml", dangling.c_str()), 0);
    std::string const socketPath = pathOf("s");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    std::strcpy(address.sun_path, socketPath.c_str());
    int const socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(socketDescriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

    for (std::string const& path :
         {file + "/inside.xml", loop, dangling, socketPath, pathOf(std::string(300, 'n').c_str()),
          std::string(100000, '/') + "x"}) {
        EXPECT_EQ(import(path), plainError("File: \"" + path + "\" not found."));
    }
    close(socketDescriptor);
    expectRecovery();
}

// It opens like any other, but every read fails.
TEST_F(HostileFile, ThatCannotBeReadIsAnEmptyInput) {
    EXPECT_EQ(import("/proc/self/mem"), incident(3, 1, 0, "no element found"));
    EXPECT_EQ(import(directory), incident(3, 1, 0, "no element found"));
    expectRecovery();
}

// Its memory is not for it to choose: NULs without end are refused with the first piece.
TEST_F(HostileFile, WithoutEndIsRefused) {
    EXPECT_EQ(import("/dev/zero"), incident(3, 1, 0, "not well-formed (invalid token)"));
    expectRecovery();
}

// The file loses its end while its first piece is parsed: what was read by then stays.
TEST_F(HostileFile, MayBeCutWhileItIsRead) {
    for (std::size_t const left : {0U, 1U, 4096U, 4097U, 8192U}) {
        int const seen = int(std::max(left, kPiece) - kHead.size());
        importWhile(
            kText, incident(3, 3, seen, "no element found"),
            [left](std::string const& path) { EXPECT_EQ(truncate(path.c_str(), off_t(left)), 0); });
        EXPECT_EQ(values("d"), "i=7*") << left;
        EXPECT_EQ(values("e"), "no document") << left;
        expectRecovery();
        collection.deleteSchema("s");
        collection.deleteSchema("t");
    }
}

// It grows by what does not belong there.
TEST_F(HostileFile, MayGrowWhileItIsRead) {
    importWhile(kText, incident(3, 6, 0, "junk after document element"),
                [](std::string const& path) { std::ofstream(path, std::ios::app) << "<phone>"; });
    EXPECT_EQ(values("d"), "i=7*");
    EXPECT_EQ(values("e"), "i=8*");
    expectRecovery();
}

// It is deleted, or another file takes its place: what was opened is read to its end.
TEST_F(HostileFile, MayVanishWhileItIsRead) {
    importWhile(kText, "",
                [](std::string const& path) { EXPECT_EQ(std::remove(path.c_str()), 0); });
    EXPECT_EQ(values("d"), "i=7*");
    EXPECT_EQ(values("e"), "i=8*");
    expectRecovery();
    collection.deleteSchema("s");
    collection.deleteSchema("t");
    std::string const another = write("another.xml", "<phone></oops>");
    importWhile(kText, "", [&another](std::string const& path) {
        EXPECT_EQ(std::rename(another.c_str(), path.c_str()), 0);
    });
    EXPECT_EQ(values("e"), "i=8*");
    expectRecovery();
}

// A device that gives a few bytes at a time.
TEST_F(HostileFile, MayComeBitByBit) {
    Device const device(pathOf("pipe"), [](int descriptor) {
        std::size_t length = 1;
        for (std::size_t at = 0; at < kText.size(); at += length, length = length % 7 + 1) {
            std::string const piece = kText.substr(at, length);
            EXPECT_EQ(::write(descriptor, piece.data(), piece.size()), ssize_t(piece.size()));
        }
    });
    EXPECT_EQ(import(pathOf("pipe")), incident(2, 2, 0, kWarning));
    EXPECT_EQ(values("d"), "i=7*");
    EXPECT_EQ(values("e"), "i=8*");
    expectRecovery();
}

// One that ends early, after any part of a piece.
TEST_F(HostileFile, MayEndEarly) {
    for (std::size_t const length : {kHead.size(), std::size_t(1000), kPiece, 2 * kPiece}) {
        std::string const path = pathOf("pipe");
        {
            Device const device(path, [length](int descriptor) {
                EXPECT_EQ(::write(descriptor, kText.data(), length), ssize_t(length));
            });
            EXPECT_EQ(import(path),
                      incident(2, 2, 0, kWarning) +
                          incident(3, 3, int(length - kHead.size()), "no element found"))
                << length;
        }
        EXPECT_EQ(std::remove(path.c_str()), 0);
        EXPECT_EQ(values("d"), "i=7*") << length;
        expectRecovery();
        collection.deleteSchema("s");
        collection.deleteSchema("t");
    }
}

// One that fails in the middle: reading is interrupted by a signal, and what is missing is missed.
TEST_F(HostileFile, MayFailInTheMiddle) {
    struct sigaction interrupt = {};
    struct sigaction before = {};
    interrupt.sa_handler = [](int) {};
    ASSERT_EQ(sigaction(SIGUSR1, &interrupt, &before), 0); // without SA_RESTART: the read fails
    pthread_t const reader = pthread_self();
    std::atomic<bool> isRead{false};
    {
        std::size_t const length = kPiece + 1000;
        Device const device(pathOf("pipe"), [&](int descriptor) {
            EXPECT_EQ(::write(descriptor, kText.data(), length), ssize_t(length));
            for (int unread = 1; unread > 0;) EXPECT_EQ(ioctl(descriptor, FIONREAD, &unread), 0);
            while (!isRead) {
                EXPECT_EQ(pthread_kill(reader, SIGUSR1), 0);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
        EXPECT_EQ(import(pathOf("pipe")),
                  incident(2, 2, 0, kWarning) +
                      incident(3, 3, int(length - kHead.size()), "no element found"));
        isRead = true;
    }
    ASSERT_EQ(sigaction(SIGUSR1, &before, nullptr), 0);
    EXPECT_EQ(values("d"), "i=7*");
    EXPECT_EQ(values("e"), "no document");
    expectRecovery();
}
