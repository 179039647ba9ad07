#pragma once

#include "channel/achannelinfomodel.h"

#include "channeltree.h"
#include "core/modeltexts.h"

#include <QtCore/QStringList>
#include <QtTest/QAbstractItemModelTester>

// What the tests of the channel model read models by.
namespace channelmodel {

constexpr auto kReport = QAbstractItemModelTester::FailureReportingMode::QtTest;
constexpr int kColumnCount = 11;

using modeltexts::headerTexts;
using modeltexts::rowTexts;

// The labels below `parent`, each level in brackets: "a b(c d)".
inline QString treeText(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex())
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const QString below = treeText(model, index);
        texts.append(index.data().toString() +
                     (below.isEmpty() ? QString() : QLatin1Char('(') + below + QLatin1Char(')')));
    }
    return texts.join(QLatin1Char(' '));
}

// The index of a path of labels; invalid if there is none.
inline QModelIndex indexAt(const QAbstractItemModel &model, const QStringList &path, int column = 0)
{
    QModelIndex index;
    for (const QString &label : path) {
        int row = 0;
        while (row < model.rowCount(index) && model.index(row, 0, index).data().toString() != label)
            ++row;
        index = model.index(row, 0, index);
        if (!index.isValid())
            return {};
    }
    return index.sibling(index.row(), column);
}

// d, b(f e), c, a(h g) below an unlabelled root.
inline AChannelInfo *unsortedPlan()
{
    using channeltree::node;
    AChannelInfo *root = node(nullptr, QString());
    node(root, QStringLiteral("d"), "100 MHz", "110 MHz");
    AChannelInfo *b = node(root, QStringLiteral("b"), "9 MHz", "20 MHz");
    node(b, QStringLiteral("f"), "12 MHz", "13 MHz");
    node(b, QStringLiteral("e"), "9.5 MHz", "10 MHz");
    node(root, QStringLiteral("c"), "20 MHz", "30 MHz");
    AChannelInfo *a = node(root, QStringLiteral("a"), "1 GHz", "2 GHz");
    node(a, QStringLiteral("h"), "1500 MHz", "1600 MHz");
    node(a, QStringLiteral("g"), "1100 MHz", "1200 MHz");
    return root;
}

} // namespace channelmodel
