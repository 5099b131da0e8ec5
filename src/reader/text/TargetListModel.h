#pragma once

#include <QAbstractListModel>

#include <functional>

namespace Quillory {

// Rows whose titles are made when they are asked for.
class TargetListModel : public QAbstractListModel {
    Q_OBJECT
public:
    TargetListModel(qsizetype count, std::function<QString(qsizetype)> title, QObject* parent)
        : QAbstractListModel(parent)
        , m_count(count)
        , m_title(std::move(title))
    {
    }

    int rowCount(QModelIndex const& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_count);
    }
    QVariant data(QModelIndex const& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(m_title(index.row())) : QVariant();
    }

private:
    qsizetype m_count;
    std::function<QString(qsizetype)> m_title;
};

}
