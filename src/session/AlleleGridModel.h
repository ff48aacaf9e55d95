#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "population/Table.h"

namespace tavrelle {

// The grid's view of the population on screen: every row of the table, heading rows included,
// edited in place. A changed cell calls `onCellChanged` (the data must be checked again and
// saved).
class AlleleGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit AlleleGridModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    // Shows another table (or none); the model never owns it.
    void Bind(Table* table);
    Table* Bound() const { return table_; }
    // The table's rows changed behind the model's back (rows added or deleted).
    void Reload();

    // A typed grid offers one blank row at the foot; typing in it appends a sample.
    void SetAllowAddNew(bool allow);

    std::function<void()> onCellChanged;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Table* table_ = nullptr;
    bool allowAddNew_ = false;
};

}  // namespace tavrelle
