#include "SampleNetwork.h"

#include <NELK/GraphEdge.h>
#include <NELK/GraphNode.h>

#include <QColor>

namespace
{

const QColor money(0x2e, 0x8b, 0x57);
const QColor contact(0x3b, 0x6f, 0xb6);
const QColor travel(0xc7, 0x6b, 0x1f);
const QColor suspicion(0xb0, 0x2a, 0x37);
/// Lets the edge shine through behind its text.
const QColor paper(0xff, 0xff, 0xff, 0xd0);

NELK::GraphNode addNode(NELK::GraphScene& scene, const QString& icon, const QString& label, int x, int y)
{
    NELK::GraphNode node = scene.createNode();
    node.setImage(icon, false);
    node.setPosGraph(x, y);
    node.setLabel(label, {});
    node.setLabelColor(Qt::black, Qt::transparent);
    return node;
}

NELK::GraphEdge addEdge(NELK::GraphScene& scene, const NELK::GraphNode& from, const NELK::GraphNode& to,
                        const QString& label, const QColor& color)
{
    NELK::GraphEdge edge = scene.createEdge(from, to);
    edge.setEdgeColor(color);
    edge.setEndArrowShow(true);
    edge.setLabel(label);
    edge.setLabelColor(Qt::black, paper);
    return edge;
}

NELK::GraphEdge addParallelEdge(NELK::GraphScene& scene, const NELK::GraphEdge& base, int index, const QString& label,
                                const QColor& color)
{
    NELK::GraphEdge edge = scene.createEdge(base, index);
    edge.setEdgeColor(color);
    edge.setLabel(label);
    edge.setLabelColor(Qt::black, paper);
    return edge;
}

template <typename Element>
void select(Element& element, QList<qint64>& selected)
{
    element.setSelect(true);
    selected.append(element.getId());
}

/// Two people, their company and their bank: parallel edges, arrows at either end and both, a right angle, two rings.
void addMoney(NELK::GraphScene& scene, const NELK::GraphNode& anna, const NELK::GraphNode& boris, Selection& selection)
{
    NELK::GraphNode company = addNode(scene, QStringLiteral("company"), QStringLiteral("Orchard Trading"), 0, -1500);
    company.setSize(1.5f);
    company.setCircleShow(true);
    company.setCircleColor(money);
    company.setCombined(true);
    company.setLabelSize(1.4f);
    NELK::GraphNode bank =
        addNode(scene, QStringLiteral("bank"), QStringLiteral("Harbour Bank\nBranch 7"), 2600, -1500);
    select(bank, selection.nodes);

    NELK::GraphEdge transfer = addEdge(scene, anna, boris, QStringLiteral("12 000"), money);
    transfer.setEdgeWidth(24);
    NELK::GraphEdge back = addParallelEdge(scene, transfer, 1, QStringLiteral("3 500"), money);
    back.setStartArrowShow(true);
    NELK::GraphEdge calls = addParallelEdge(scene, transfer, 2, QStringLiteral("14 calls"), contact);
    calls.setStartArrowShow(true);
    calls.setEndArrowShow(true);
    select(calls, selection.edges);

    addEdge(scene, anna, company, QStringLiteral("owns"), Qt::darkGray);
    NELK::GraphEdge account = addEdge(scene, company, bank, QStringLiteral("account"), money);
    account.setLabelColor(Qt::white, money);
    NELK::GraphEdge loan = addEdge(scene, boris, bank, QStringLiteral("loan"), suspicion);
    loan.setRightAngle(true);
    loan.setLabelSize(1.5f);

    NELK::GraphEdge ownTransfer = scene.createEdge(company, company);
    ownTransfer.setEdgeColor(money);
    ownTransfer.setEdgeWidth(16);
    scene.createEdge(ownTransfer, 1).setEdgeColor(contact);
}

/// What else is known of the two: badges, set numbers, labels in several rows, sizes and scripts.
void addTraces(NELK::GraphScene& scene, const NELK::GraphNode& anna, const NELK::GraphNode& boris, Selection& selection)
{
    NELK::GraphNode phone = addNode(scene, QStringLiteral("phone"), QStringLiteral("+44 20 7946 0018"), -2600, 900);
    phone.setLock(true);
    phone.setSetNum({QStringLiteral("14"), QStringLiteral("3"), QStringLiteral("27")});
    NELK::GraphNode flight = addNode(scene, QStringLiteral("flight"), QStringLiteral("航班 CA 937\n伦敦"), 0, 1500);
    flight.setFocus(true);
    flight.setCombined(true);
    select(flight, selection.nodes);
    NELK::GraphNode city = addNode(scene, QStringLiteral("city"), QStringLiteral("北京"), 2600, 1300);
    city.setLabelSize(2.0f);
    city.setLabelColor(Qt::white, travel);
    city.setCircleShow(true);
    city.setCircleSize(1.3f);
    city.setCircleColor(travel);
    city.setLock(true);
    city.setFocus(true);
    city.setCombined(true);
    select(city, selection.nodes);
    NELK::GraphNode parcel = addNode(scene, QStringLiteral("key"), QStringLiteral("Locker 31"), -2600, -1300);
    parcel.setSize(0.5f);

    addEdge(scene, anna, phone, QStringLiteral("uses"), contact);
    addEdge(scene, anna, flight, QStringLiteral("booked"), travel);
    addEdge(scene, boris, flight, QStringLiteral("boarded"), travel);
    NELK::GraphEdge arrival = addEdge(scene, flight, city, QStringLiteral("到达"), travel);
    select(arrival, selection.edges);
    addEdge(scene, anna, parcel, {}, suspicion);
}

} // namespace

Selection buildSampleNetwork(NELK::GraphScene& scene)
{
    Selection selection;
    NELK::GraphNode anna = addNode(scene, QStringLiteral("person"), QStringLiteral("Anna Weber"), -1400, 0);
    NELK::GraphNode boris =
        addNode(scene, QStringLiteral("person"), QStringLiteral("Boris Lang\nborn 1971 in Riga"), 1400, 0);
    boris.setCircleShow(true);
    boris.setCircleColor(suspicion);
    boris.setSetNum({QStringLiteral("2"), QStringLiteral("41")});
    select(boris, selection.nodes);
    addMoney(scene, anna, boris, selection);
    addTraces(scene, anna, boris, selection);
    return selection;
}
