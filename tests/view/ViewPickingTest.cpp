#include <QtTest>

class ViewPickingTest : public QObject
{
    Q_OBJECT
};

QTEST_GUILESS_MAIN(ViewPickingTest)

#include "ViewPickingTest.moc"
