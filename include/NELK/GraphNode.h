#pragma once

#include <NELK/Export.h>

#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QtGlobal>

class QColor;

namespace NELK
{

class GraphScene;
class Scene;
struct NodeData;

/// A host's hold on one node of a GraphScene.
///
/// A handle is a small value: copy it, keep it, throw it away; it owns nothing and never keeps the node or the scene
/// alive. Handles come from a GraphScene. Its three states:
///
/// - null: default-constructed, or the scene found or created nothing. valid() is false.
/// - live: the node is in its scene. valid() is true and every member may be called.
/// - dangling: the node was removed, the scene was cleared, or another node took the id. valid() is false for good.
///
/// On a handle that is not live only valid(), getId(), comparison and assignment may be called, unless a member says
/// otherwise; a debug build asserts this. Once the GraphScene is destroyed, nothing may be called but assignment.
///
/// Two planes are in use, both in scene units (one pixel at camera scale 1). The *scene plane* has y up; the *graph
/// plane*, in the members with Graph in their name, is its mirror image with y down. Positions are 32-bit floats
/// inside; where they are given out as integers they are cut toward zero.
///
/// No setter emits a signal or repaints: a change is seen after `GraphView::NelkUpdate`. All members belong to the
/// user interface thread, and no cost depends on the size of the scene: a change of position costs a shape for each
/// edge of the node, a change of size one for each of its rings, a text one look-up for each character.
///
/// Sizes have a lower bound, which NaN takes too, and no upper one.
class NELK_EXPORT GraphNode
{
public:
    /// A null handle.
    GraphNode() = default;

    /// Whether both refer to the same node of the same scene. Null handles are equal if both were default-constructed,
    /// or both came from the same scene.
    bool operator==(const GraphNode& other) const;
    bool operator!=(const GraphNode& other) const { return !(*this == other); }

    /// The id that the node has, or had; 0 in a null handle.
    qint64 getId() const { return id; }
    /// Whether the node is in its scene. Safe to ask at any time while the scene exists. A handle of a removed node
    /// stays invalid also when a new node takes the same id.
    bool valid() const;

    /// Centre of the icon, scene plane.
    QPoint pos() const;
    /// Centre of the icon, graph plane.
    QPoint posGraph() const;
    /// The box of the icon (or circle, where that is on) and the label below it, scene plane. Its top is the largest y
    /// and its height counts downward from there. The left side is that of the icon, however wide the label is. While
    /// the scene hides node text, the label is the set numbers alone.
    QRect rect() const;
    /// The same box in the graph plane, where it is an ordinary QRect.
    QRect rectGraph() const;

    /// Moves the node, and its edges with it. Any position will do, inside the scene's size or not; `lock` does not
    /// hold the node back. Scene plane.
    void setPos(const QPoint& pos);
    void setPos(int x, int y);
    /// The same in the graph plane.
    void setPosGraph(const QPoint& pos);
    void setPosGraph(int x, int y);

    bool select() const;
    /// Selects the node or not, also where it is hidden or cannot be picked. Emits nothing.
    void setSelect(bool select);
    /// Shows or hides the node. Its edges are shown or hidden on their own.
    void setShow(bool show);
    /// With `lock` the user cannot drag the node; a badge tells.
    void setLock(bool lock);
    /// Puts the focus badge on the node, or takes it off.
    void setFocus(bool focus);
    /// Puts the combined badge on the node, or takes it off.
    void setCombined(bool combined);

    /// Gives the icon `size` times the default edge length of 256 units, at least 0.1 times. Circle and rings of the
    /// node follow.
    void setSize(float size);
    /// Draws a circle around the icon, or none.
    void setCircleShow(bool show);
    /// Makes the circle `size` times as wide as the icon's diagonal, at least 1.0 times. A ring of the node
    /// follows when its shape is next built: with a move or setSize() of the node, or a new width of the ring.
    void setCircleSize(float size);
    /// Colour of the circle; alpha does not count. Black at first.
    void setCircleColor(const QColor& color);

    /// Sets the text below the node: the rows of `text`, then the rows of `text2`. Only a line feed ends a row; empty
    /// rows are left out, and nothing wraps. With set numbers present a blank row is kept for them between the two
    /// texts, so call setSetNum() first. The library must have been started (see INIT_NELK).
    void setLabel(const QString& text, const QString& text2);
    /// Sets the numbers below the first text: a row of boxes, black on yellow, from left to right. They take the place
    /// that the last setLabel() kept for them. The library must have been started (see INIT_NELK).
    void setSetNum(const QStringList& numbers);
    /// Colour of the characters, and behind them; both with alpha. Black on transparent at first.
    void setLabelColor(const QColor& color, const QColor& background);
    /// Scales the text, at least 1.0 times; at 1 a row is 76 units high.
    void setLabelSize(float size);

    /// Gives the node the icon `name` from the entity directory or, for ids from 12345678900 on, from the float
    /// directory: the file name without ".png", wherever below the directory the file lies. An unknown name shows the
    /// first icon of all. With `customFile`, `name` is the path of any image file instead; the same path again has the
    /// file read again. The picture follows within about a second, the colour for the overview at once: that of the
    /// icon's colour table, or green for a file. A file that cannot be read is blank until it is asked for again; a
    /// relative path counts from the working directory at the time of reading. Nothing happens before the library has
    /// been started, and an icon is not taken before its atlas has arrived (see INIT_NELK).
    void setImage(const QString& name, bool customFile);
    /// Does nothing. Icons go by name.
    void setImage(int image);

private:
    friend class GraphScene;

    GraphNode(NodeData* nodeRecord, Scene* nodeScene);
    NodeData& data() const;
    void moveTo(float x, float y);
    QRect rectWithTop(int top) const;

    NodeData* record = nullptr;
    Scene* scene = nullptr;
    // Records are recycled: these two tell this node from another one at the same address.
    qint64 id = 0;
    quint64 serial = 0;
};

} // namespace NELK
