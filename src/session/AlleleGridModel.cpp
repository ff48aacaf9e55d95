#include "session/AlleleGridModel.h"

#include <QFont>

#include "base/ProgramError.h"

namespace tavrelle {

void AlleleGridModel::Bind(Table* table) {
    beginResetModel();
    table_ = table;
    allowAddNew_ = false;
    endResetModel();
}

void AlleleGridModel::SetAllowAddNew(bool allow) {
    beginResetModel();
    allowAddNew_ = allow;
    endResetModel();
}

void AlleleGridModel::Reload() {
    beginResetModel();
    endResetModel();
}

int AlleleGridModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid() || !table_) return 0;
    return static_cast<int>(table_->RecordCount()) + (allowAddNew_ ? 1 : 0);
}

int AlleleGridModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid() || !table_) return 0;
    return table_->ColumnCount();
}

QVariant AlleleGridModel::data(const QModelIndex& index, int role) const {
    if (!table_ || !index.isValid()) return {};
    if (index.row() >= table_->RecordCount()) return {};  // the blank row for a new sample
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return QString::fromStdString(table_->Cell(index.row(), index.column()));
    if (role == Qt::FontRole && index.row() < 2) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    return {};
}

bool AlleleGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!table_ || !index.isValid() || role != Qt::EditRole) return false;
    std::string text = value.toString().toStdString();
    if (text.size() > Table::kMaxCellLength) return false;  // a cell holds 255 characters
    if (index.row() >= table_->RecordCount()) {
        if (text.empty()) return false;
        // A new sample: numbered after the samples above it, the blank row moves down.
        beginInsertRows({}, rowCount(), rowCount());
        table_->AddNew();
        table_->SetField(0, std::to_string(table_->RecordCount() - 2));
        endInsertRows();
    } else if (text == table_->Cell(index.row(), index.column())) {
        return false;
    }
    table_->SetCell(index.row(), index.column(), std::move(text));
    emit dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1),
                     {Qt::DisplayRole, Qt::EditRole});
    if (onCellChanged) onCellChanged();
    return true;
}

Qt::ItemFlags AlleleGridModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
}

QVariant AlleleGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Horizontal) return QStringLiteral("Col_%1").arg(section + 1);
    return section + 1;
}

}  // namespace tavrelle
