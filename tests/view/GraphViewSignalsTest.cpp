#include <QtTest>

class GraphViewSignalsTest : public QObject
{
    Q_OBJECT
};

QTEST_GUILESS_MAIN(GraphViewSignalsTest)

#include "GraphViewSignalsTest.moc"
