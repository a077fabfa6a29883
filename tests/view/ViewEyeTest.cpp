#include <QtTest>

class ViewEyeTest : public QObject
{
    Q_OBJECT
};

QTEST_GUILESS_MAIN(ViewEyeTest)

#include "ViewEyeTest.moc"
