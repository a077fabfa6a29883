#include <QtTest>

class GraphViewCameraTest : public QObject
{
    Q_OBJECT
};

QTEST_GUILESS_MAIN(GraphViewCameraTest)

#include "GraphViewCameraTest.moc"
