// Builds a small network through the public handles and prints what the scene answers.

#include <NELK/NELK>

#include <QCoreApplication>
#include <QTextStream>

namespace
{

QTextStream out(stdout);

QString text(const QPoint& point)
{
    return QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y());
}

QString text(const QRect& rect)
{
    return QStringLiteral("left %1, top %2, %3 by %4")
        .arg(rect.left())
        .arg(rect.top())
        .arg(rect.width())
        .arg(rect.height());
}

void print(const QString& name, const NELK::GraphNode& node)
{
    out << "  node " << node.getId() << "  " << name << ", at " << text(node.posGraph()) << ", box "
        << text(node.rectGraph()) << '\n';
}

void print(const QString& name, const NELK::GraphEdge& edge)
{
    out << "  edge " << edge.getId() << "  " << name << ", from " << text(edge.startPos()) << " over "
        << text(edge.curveStartPos()) << " and " << text(edge.curveEndPos()) << " to " << text(edge.endPos()) << '\n';
}

/// Two people, the company that one of them owns, and the ways in which money went. Gives back one of the people.
NELK::GraphNode showNetwork(NELK::GraphScene& scene)
{
    NELK::GraphNode anna = scene.createNode();
    NELK::GraphNode boris = scene.createNode();
    NELK::GraphNode company = scene.createNode();
    anna.setPosGraph(-800, 0);
    boris.setPosGraph(800, 0);
    company.setPosGraph(0, -600);
    company.setSize(1.5f);
    company.setCircleShow(true);

    NELK::GraphEdge firstPayment = scene.createEdge(anna, boris);
    NELK::GraphEdge secondPayment = scene.createEdge(firstPayment, 1);
    NELK::GraphEdge thirdPayment = scene.createEdge(firstPayment, 2);
    NELK::GraphEdge share = scene.createEdge(boris, company);
    NELK::GraphEdge ownAccount = scene.createEdge(company, company);
    thirdPayment.setEndArrowShow(true);
    share.setRightAngle(true);

    out << "The network (graph plane, y down):\n";
    print("Anna", anna);
    print("Boris", boris);
    print("the company", company);
    print("first payment", firstPayment);
    print("second payment, parallel", secondPayment);
    print("third payment, parallel", thirdPayment);
    print("share, right-angled", share);
    print("own account, a ring", ownAccount);
    return boris;
}

void showAnswers(NELK::GraphScene& scene)
{
    out << "\nWhat the scene answers:\n";
    out << "  size " << scene.width() << " by " << scene.height() << '\n';
    out << "  around all nodes (scene plane, y up): " << text(scene.boundingRect(false)) << '\n';
    out << "  nodes at (-700, 0): " << scene.testNodeAtPoint({-700, 0}).size() << '\n';
    out << "  nodes at (0, 0): " << scene.testNodeAtPoint({0, 0}).size() << '\n';

    scene.elementsAlignToCenter();
    out << "  aligned to the centre: " << text(scene.boundingRect(false)) << '\n';
}

QString validity(bool valid)
{
    return valid ? QStringLiteral("valid") : QStringLiteral("invalid");
}

void showRemoval(NELK::GraphScene& scene, const NELK::GraphNode& node)
{
    scene.removeNode(node.getId());
    out << "\nNode " << node.getId() << " removed, and its edges with it:\n";
    out << "  its handle is " << validity(node.valid()) << '\n';
    const NELK::GraphNode successor = scene.createNode(node.getId());
    out << "  a new node " << node.getId() << " is " << validity(successor.valid()) << ", the old handle is "
        << validity(node.valid()) << '\n';
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    NELK::GraphScene scene;
    const NELK::GraphNode boris = showNetwork(scene);
    showAnswers(scene);
    showRemoval(scene, boris);
    return 0;
}
