#include "session/GridView.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

namespace tavrelle {

GridView::GridView(QWidget* parent) : QTableView(parent) {
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::NoSelection);  // the picked rows are shown by hand
    horizontalHeader()->setVisible(false);
    verticalHeader()->setSectionsClickable(true);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setAlternatingRowColors(true);
    connect(verticalHeader(), &QHeaderView::sectionPressed, this, [this](int row) {
        const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
        if (modifiers == Qt::ShiftModifier) {
            if (onShiftClick) onShiftClick();
            return;
        }
        if (modifiers == Qt::ControlModifier) {
            auto it = std::find(picked_.begin(), picked_.end(), row);
            if (it == picked_.end())
                picked_.push_back(row);
            else
                picked_.erase(it);
        } else {
            picked_ = {row};
        }
        ShowPicked();
    });
    connect(verticalHeader(), &QHeaderView::sectionClicked, this, [this](int) {
        if (onSelectionMouseUp) onSelectionMouseUp();
    });
}

void GridView::SetPickedRows(std::vector<int> rows) {
    picked_ = std::move(rows);
    ShowPicked();
}

void GridView::ClearPicked() {
    picked_.clear();
    ShowPicked();
}

void GridView::FitColumns() {
    resizeColumnsToContents();
    const int widest = fontMetrics().horizontalAdvance(QString(18, 'M'));
    for (int column = 0; model() && column < model()->columnCount(); ++column)
        if (columnWidth(column) > widest) setColumnWidth(column, widest);
}

void GridView::ShowPicked() {
    if (!selectionModel()) return;
    QItemSelection selection;
    for (int row : picked_) {
        if (!model() || row >= model()->rowCount()) continue;
        selection.select(model()->index(row, 0), model()->index(row, model()->columnCount() - 1));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void GridView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::ShiftModifier) {
        if (onShiftClick) onShiftClick();
        return;
    }
    QTableView::mousePressEvent(event);
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (onSelectionMouseUp) onSelectionMouseUp();
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (state() != QAbstractItemView::EditingState && onKey &&
        onKey(event->key(), event->modifiers()))
        return;
    QTableView::keyPressEvent(event);
}

}  // namespace tavrelle
