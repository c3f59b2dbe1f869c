#include <QCoreApplication>
#include <QHashFunctions>

#include <gmock/gmock.h>

namespace {

struct PinnedHashSeed {
    PinnedHashSeed()
    {
        QHashSeed::setDeterministicGlobalSeed();
    }
};

// Qt writes attributes in the order of a hash, which differs from process to process unless the seed is pinned. A hash
// keeps the seed that it was made with, so main() would be too late for the hashes among the static objects of a test:
// this one is built before all of them.
[[gnu::init_priority(101)]] const PinnedHashSeed pinnedHashSeed;

}

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
