#pragma once

#include <QTableView>
#include <functional>

namespace tavrelle {

// The grid of the population on screen. Rows are picked with Ctrl and the left button, in an
// order the copy keeps; Shift with the left button only warns. The keys of the editing commands
// work while the grid has the focus.
class GridView : public QTableView {
    Q_OBJECT
public:
    explicit GridView(QWidget* parent = nullptr);

    // The selected rows in the order the user picked them.
    const std::vector<int>& PickedRows() const { return picked_; }
    void SetPickedRows(std::vector<int> rows);
    void ClearPicked();
    // Columns as wide as their texts, but none wider than a long name needs.
    void FitColumns();

    std::function<void()> onShiftClick;
    std::function<void()> onSelectionMouseUp;
    // Key handler: key code and modifiers; returns true when it took the key.
    std::function<bool(int key, Qt::KeyboardModifiers modifiers)> onKey;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void ShowPicked();
    std::vector<int> picked_;
};

}  // namespace tavrelle
