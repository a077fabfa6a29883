#include "scene/InstanceList.h"

#include "support/RecordText.h"

#include <QList>
#include <QtTest>

using namespace NELK;

class InstanceListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordIsTwentyEightFloatsWithoutAGap();
    void newRecordHasTheIdentityAndZeros();
    void startsEmpty();
    void keepsRecordsInTheirOrder();
    void countIsThatOfTheLastCompletion();
    void growsToOneAndAHalfTimesItsCapacity();
    void restartKeepsTheMemory();
};

namespace
{

InstanceRecord markedRecord(float mark)
{
    InstanceRecord record;
    record.para1 = {mark, mark, mark, mark};
    return record;
}

QString markedText(float mark)
{
    return placedRecord(0.0f, 0.0f, 1.0f, 1.0f, {mark, mark, mark, mark});
}

void addRecords(InstanceList& list, int howMany)
{
    for (int i = 0; i < howMany; ++i)
        list.add(markedRecord(static_cast<float>(i)));
}

} // namespace

void InstanceListTest::recordIsTwentyEightFloatsWithoutAGap()
{
    InstanceRecord record;
    record.model.columns = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    record.para1 = {17, 18, 19, 20};
    record.para2 = {21, 22, 23, 24};
    record.para3 = {25, 26, 27, 28};
    QCOMPARE(sizeof(InstanceRecord), sizeof(float) * 28);
    RecordFloats expected;
    for (std::size_t i = 0; i < expected.size(); ++i)
        expected[i] = static_cast<float>(i + 1);
    QCOMPARE(recordText(record), recordText(expected));
}

void InstanceListTest::newRecordHasTheIdentityAndZeros()
{
    QCOMPARE(recordText(InstanceRecord()), placedRecord(0.0f, 0.0f, 1.0f, 1.0f));
}

void InstanceListTest::startsEmpty()
{
    const InstanceList list;
    QVERIFY(list.records.empty());
    QCOMPARE(list.count, 0);
}

void InstanceListTest::keepsRecordsInTheirOrder()
{
    InstanceList list;
    for (const float mark : {3.0f, 1.0f, 2.0f, 1.0f})
        list.add(markedRecord(mark));
    list.complete();
    QCOMPARE(recordsOf(list), (QStringList{markedText(3.0f), markedText(1.0f), markedText(2.0f), markedText(1.0f)}));
}

void InstanceListTest::countIsThatOfTheLastCompletion()
{
    InstanceList list;
    addRecords(list, 3);
    QCOMPARE(list.count, 0);
    list.complete();
    QCOMPARE(list.count, 3);
    list.restart();
    QVERIFY(list.records.empty());
    QCOMPARE(list.count, 3);
    addRecords(list, 2);
    QCOMPARE(list.count, 3);
    list.complete();
    QCOMPARE(list.count, 2);
}

void InstanceListTest::growsToOneAndAHalfTimesItsCapacity()
{
    InstanceList list;
    QList<int> capacities;
    for (int i = 0; i < 100; ++i) {
        addRecords(list, 1);
        const int capacity = static_cast<int>(list.records.capacity());
        if (capacities.isEmpty() || capacities.last() != capacity)
            capacities.append(capacity);
    }
    QCOMPARE(capacities, (QList<int>{1, 2, 3, 4, 6, 9, 13, 19, 28, 42, 63, 94, 141}));
}

void InstanceListTest::restartKeepsTheMemory()
{
    InstanceList list;
    addRecords(list, 50);
    list.complete();
    const std::size_t capacity = list.records.capacity();
    const InstanceRecord* memory = list.records.data();
    list.restart();
    QCOMPARE(list.records.capacity(), capacity);
    addRecords(list, 50);
    QCOMPARE(list.records.capacity(), capacity);
    QCOMPARE(list.records.data(), memory);
}

QTEST_GUILESS_MAIN(InstanceListTest)

#include "InstanceListTest.moc"
