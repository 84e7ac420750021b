// Work of which every single allocation fails once, and a store to do it on.

#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "tests/support/allocations.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

inline constexpr char kDefinition[] =
    "<cfg><schema name='phone settings with a long name to allocate for'>"
    "<choice name='ring tone names that are long enough for the heap'>"
    "<option>the first option, longer than a local buffer</option><option>low</option></choice>"
    "<range name='volume of the loudspeaker, from one to the tenth' baseType='int' minValue='1' "
    "maxValue='10'/>"
    "<item name='label' type='string' default='a default that does not fit into the object'/>"
    "<item name='ring' type='ring tone names that are long enough for the heap'/>"
    "<item name='volume' type='volume of the loudspeaker, from one to the tenth' default='5'/>"
    "<branch name='key' occurrences='3'></branch>"
    "<item name='text' type='string' parent='/key' occurrences='2'/>"
    "<item name='gain' type='float' parent='/key' default='0.5'/>"
    "<branch name='inner' parent='/key'></branch>"
    "<item name='deep' type='uint' parent='//inner' default='7'/>"
    "</schema>"
    "<collection name='site'><schema name='s'><item name='a' type='bool'/></schema>"
    "<document name='d' schema='s'><a>true</a></document></collection></cfg>";

inline constexpr char kDocument[] =
    "<cfg><document name='a document whose name is longer than thirty-two' schema='phone settings "
    "with a long name to allocate for'>"
    "<label>another text that needs a block on the heap</label><volume>7</volume>"
    "<key><text>&lt;first text, escaped, and long enough for a block&gt;</text><gain>1.5</gain>"
    "</key><key occurrence='3'><inner><deep>9</deep></inner></key></document>"
    "<document name='plain'><itemValue>x</itemValue></document></cfg>";

// Wrong in many ways, each of which is reported and lifted by a warning.
inline constexpr char kErrors[] =
    "<cfg><unknown/><schema name=''/><unknown/><schema name='e'><item name='x' type='nothing'/>"
    "<unknown a='1'/><branch/><range name='r' baseType='int' minValue='9' maxValue='1'/></schema>"
    "<document schema='e'/><unknown/><document name='plain'><itemValue occurrence='0'>y</itemValue>"
    "</document>broken &nothing; text</cfg>";

// Runs `work` with its first allocation failing, then with its second, until none of those it makes
// is the one to fail. Returns how many that were.
inline long failEach(std::function<void()> const& work) {
    for (long n = 1;; ++n) {
        long const before = liveBlocks();
        bool happened = false;
        {
            IncidentLog log;
            {
                FailingAllocation const failing(n);
                try {
                    work();
                } catch (std::bad_alloc const&) {
                    // The caller is told.
                }
                happened = failing.happened();
            }
            log.take();
        }
        ZorBuiltIn::deleteBuiltInTypes();
        EXPECT_EQ(liveBlocks(), before) << "left by the failure of allocation " << n;
        EXPECT_EQ(heldLocks(), 0) << "after the failure of allocation " << n;
        EXPECT_EQ(ZorCollection::refCount, 0) << "after the failure of allocation " << n;
        if (testing::Test::HasFailure()) return 0;
        if (!happened) return n - 1;
    }
}

// The same with a collection that was filled before, without failures. Whatever failed, what was
// in it can still be read and a sound import still succeeds.
inline long failEachOnFilled(std::function<void(ZorCollection&)> const& work) {
    for (long n = 1;; ++n) {
        long const before = liveBlocks();
        bool happened = false;
        {
            IncidentLog log;
            ZorCollection store("cfg");
            store.importXML(kDefinition);
            store.importXML(kDocument);
            EXPECT_EQ(log.take(), "");
            {
                FailingAllocation const failing(n);
                try {
                    work(store);
                } catch (std::bad_alloc const&) {
                }
                happened = failing.happened();
            }
            log.take();
            store.importXML("<cfg><collection name='after'><document name='after'><itemValue>ok"
                            "</itemValue></document></collection></cfg>");
            EXPECT_EQ(log.take(), "") << "after the failure of allocation " << n;
            EXPECT_EQ(store.exportCollection("after"),
                      "<cfg><collection name=\"after\"><document name=\"after\"><itemValue>ok"
                      "</itemValue></document></collection></cfg>");
        }
        ZorBuiltIn::deleteBuiltInTypes();
        EXPECT_EQ(liveBlocks(), before) << "left by the failure of allocation " << n;
        EXPECT_EQ(heldLocks(), 0) << "after the failure of allocation " << n;
        if (testing::Test::HasFailure()) return 0;
        if (!happened) return n - 1;
    }
}

inline ZorDocument* documentIn(ZorCollection& store) {
    return store.getDocument("a document whose name is longer than thirty-two");
}
