#include "scene/RecordPool.h"

#include <QSet>
#include <QtTest>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

using namespace NELK;

class RecordPoolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void constructsWithTheArgumentsGiven();
    void constructsAndDestroysEachRecordOnce();
    void destroysWhatIsLeftWithItself();
    void recordsKeepTheirPlaceWhileOthersComeAndGo();
    void recordsAreAlignedAsTheirTypeAsks();

    void recordsOfOneRunAreNeighbours();
    void theNextRecordTakesTheFreePlace();
    void allFreePlacesAreTakenBeforeNewMemory();

    void serialsAreNeverGivenAgain();
    void serialsDoNotStartAtZero();
    void serialsOfTwoPoolsAreTheirOwn();

    void clearDestroysTheLivingOnly();
    void clearOfAnEmptyPoolIsHarmless();
    void aClearedPoolStartsAgain();

    void memoryOfDestroyedRecordsIsOutOfBounds();
};

namespace
{

/// A record that counts its kind.
class Counted
{
public:
    explicit Counted(int number = 0) : value(number) { ++constructed; }
    ~Counted() { ++destroyed; }
    Q_DISABLE_COPY(Counted)

    static int constructed;
    static int destroyed;
    static int alive() { return constructed - destroyed; }

    int value;
};

int Counted::constructed = 0;
int Counted::destroyed = 0;

struct Referring
{
    Referring(int& referred, std::unique_ptr<int> movedIn) : reference(referred), owned(std::move(movedIn)) {}

    int& reference;
    std::unique_ptr<int> owned;
};

struct alignas(64) Wide
{
    char letter = 'w';
};

std::intptr_t addressOf(const void* record)
{
    return reinterpret_cast<std::intptr_t>(record);
}

std::vector<Counted*> createMany(RecordPool<Counted>& pool, int count)
{
    std::vector<Counted*> records;
    for (int i = 0; i < count; ++i)
        records.push_back(pool.create(i));
    return records;
}

} // namespace

void RecordPoolTest::init()
{
    Counted::constructed = 0;
    Counted::destroyed = 0;
}

void RecordPoolTest::constructsWithTheArgumentsGiven()
{
    RecordPool<Referring> pool;
    int target = 1;
    Referring* record = pool.create(target, std::make_unique<int>(7));
    record->reference = 2;
    QCOMPARE(target, 2);
    QCOMPARE(*record->owned, 7);
}

void RecordPoolTest::constructsAndDestroysEachRecordOnce()
{
    RecordPool<Counted> pool;
    const std::vector<Counted*> records = createMany(pool, 1000);
    QCOMPARE(Counted::constructed, 1000);
    QCOMPARE(Counted::destroyed, 0);
    int expected = 0;
    for (Counted* record : records) {
        pool.destroy(record);
        QCOMPARE(Counted::destroyed, ++expected);
    }
    QCOMPARE(Counted::constructed, 1000);
}

void RecordPoolTest::destroysWhatIsLeftWithItself()
{
    {
        RecordPool<Counted> pool;
        const std::vector<Counted*> records = createMany(pool, 300);
        pool.destroy(records[0]);
        pool.destroy(records[150]);
        pool.destroy(records[299]);
        QCOMPARE(Counted::alive(), 297);
    }
    QCOMPARE(Counted::constructed, 300);
    QCOMPARE(Counted::destroyed, 300);
}

void RecordPoolTest::recordsKeepTheirPlaceWhileOthersComeAndGo()
{
    RecordPool<Counted> pool;
    const std::vector<Counted*> kept = createMany(pool, 200);
    std::vector<Counted*> passing = createMany(pool, 200);
    for (Counted* record : passing)
        pool.destroy(record);
    createMany(pool, 1000);

    QSet<const Counted*> places;
    for (int i = 0; i < 200; ++i) {
        QCOMPARE(kept[size_t(i)]->value, i);
        places.insert(kept[size_t(i)]);
    }
    QCOMPARE(places.size(), 200);
}

void RecordPoolTest::recordsAreAlignedAsTheirTypeAsks()
{
    RecordPool<Wide> pool;
    for (int i = 0; i < 300; ++i)
        QCOMPARE(addressOf(pool.create()) % 64, std::intptr_t(0));
}

void RecordPoolTest::recordsOfOneRunAreNeighbours()
{
    RecordPool<Counted> pool;
    const std::vector<Counted*> records = createMany(pool, 10000);
    // A serial may stand between two records, and a run of memory must end somewhere.
    constexpr std::intptr_t closest = sizeof(Counted);
    constexpr std::intptr_t farthest = closest + 16;
    int neighbours = 0;
    for (size_t i = 1; i < records.size(); ++i) {
        const std::intptr_t step = addressOf(records[i]) - addressOf(records[i - 1]);
        if (step >= closest && step <= farthest)
            ++neighbours;
    }
    QVERIFY2(neighbours >= 9900, qPrintable(QString::number(neighbours)));
}

void RecordPoolTest::theNextRecordTakesTheFreePlace()
{
    RecordPool<Counted> pool;
    const std::vector<Counted*> records = createMany(pool, 10);
    pool.destroy(records[4]);
    Counted* next = pool.create(99);
    QCOMPARE(next, records[4]);
    QCOMPARE(next->value, 99);
    QCOMPARE(Counted::constructed, 11);
}

void RecordPoolTest::allFreePlacesAreTakenBeforeNewMemory()
{
    RecordPool<Counted> pool;
    std::vector<Counted*> records = createMany(pool, 1000);
    const QSet<Counted*> places(records.begin(), records.end());
    std::mt19937 random(1);
    for (int round = 0; round < 20; ++round) {
        std::shuffle(records.begin(), records.end(), random);
        for (size_t i = 0; i < 500; ++i)
            pool.destroy(records[i]);
        for (size_t i = 0; i < 500; ++i)
            records[i] = pool.create();
        QVERIFY(QSet<Counted*>(records.begin(), records.end()) == places);
    }
    QCOMPARE(Counted::alive(), 1000);
}

void RecordPoolTest::serialsAreNeverGivenAgain()
{
    RecordPool<Counted> pool;
    QSet<quint64> serials;
    for (int round = 0; round < 10; ++round) {
        const std::vector<Counted*> records = createMany(pool, 300);
        for (Counted* record : records)
            serials.insert(RecordPool<Counted>::serialOf(record));
        if (round % 3 == 2)
            pool.clear();
        else
            for (Counted* record : records)
                pool.destroy(record);
    }
    QCOMPARE(serials.size(), 3000);
}

void RecordPoolTest::serialsDoNotStartAtZero()
{
    // Zero is what a null handle carries.
    RecordPool<Counted> pool;
    QVERIFY(RecordPool<Counted>::serialOf(pool.create()) != 0);
}

void RecordPoolTest::serialsOfTwoPoolsAreTheirOwn()
{
    RecordPool<Counted> pool;
    RecordPool<Counted> other;
    Counted* record = pool.create();
    const quint64 serial = RecordPool<Counted>::serialOf(record);
    createMany(other, 5);
    other.clear();
    QCOMPARE(RecordPool<Counted>::serialOf(record), serial);
    QCOMPARE(Counted::alive(), 1);
}

void RecordPoolTest::clearDestroysTheLivingOnly()
{
    RecordPool<Counted> pool;
    const std::vector<Counted*> records = createMany(pool, 300);
    for (size_t i = 0; i < records.size(); i += 3)
        pool.destroy(records[i]);
    QCOMPARE(Counted::destroyed, 100);
    pool.clear();
    QCOMPARE(Counted::constructed, 300);
    QCOMPARE(Counted::destroyed, 300);
    pool.clear();
    QCOMPARE(Counted::destroyed, 300);
}

void RecordPoolTest::clearOfAnEmptyPoolIsHarmless()
{
    RecordPool<Counted> pool;
    pool.clear();
    pool.clear();
    QCOMPARE(Counted::constructed, 0);
    QCOMPARE(pool.create(3)->value, 3);
}

void RecordPoolTest::aClearedPoolStartsAgain()
{
    RecordPool<Counted> pool;
    const std::vector<Counted*> before = createMany(pool, 150);
    pool.destroy(before[7]); // a free place must not be handed out once its memory is given back
    pool.clear();

    const std::vector<Counted*> after = createMany(pool, 300);
    QCOMPARE(QSet<Counted*>(after.begin(), after.end()).size(), 300);
    for (int i = 0; i < 300; ++i)
        QCOMPARE(after[size_t(i)]->value, i);
    QCOMPARE(Counted::alive(), 300);
}

void RecordPoolTest::memoryOfDestroyedRecordsIsOutOfBounds()
{
#if defined(NELK_UNDER_ADDRESS_SANITIZER)
    const auto forbidden = [](const void* place) { return __asan_region_is_poisoned(const_cast<void*>(place), 1); };
    RecordPool<Wide> pool;
    Wide* record = pool.create();
    Wide* neighbour = pool.create();
    QVERIFY(!forbidden(record));
    pool.destroy(record);
    QVERIFY(forbidden(record));
    QVERIFY(forbidden(&record->letter + sizeof(Wide) - 1));
    QVERIFY(!forbidden(neighbour));
    QCOMPARE(pool.create(), record);
    QVERIFY(!forbidden(record));
#else
    // The macro lacks an argument in the eyes of clang's -Wpedantic.
    QTest::qSkip("only AddressSanitizer can tell", __FILE__, __LINE__);
#endif
}

QTEST_APPLESS_MAIN(RecordPoolTest)

#include "RecordPoolTest.moc"
