#include "delegatesamples.h"

#include <QtGui/QPainter>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QStyleFactory>

// Which role each delegate reads and writes, where a model shows another value than it lets edit.

namespace {

// A row of a name and a value, which keeps how it was written.
class RoleModel : public QStandardItemModel
{
    Q_OBJECT

public:
    RoleModel(const QVariantList &shown, const QVariantList &edited)
        : QStandardItemModel(1, edited.size())
        , m_shown(shown)
    {
        for (int column = 0; column < edited.size(); ++column)
            QStandardItemModel::setData(index(0, column), edited.at(column), Qt::EditRole);
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole ? m_shown.value(index.column()) : QStandardItemModel::data(index, role);
    }
    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        writtenRoles << role;
        return QStandardItemModel::setData(index, value, role);
    }

    QList<int> writtenRoles;

private:
    QVariantList m_shown;
};

QVariantList rowOf(const DelegateSample &sample, bool isCommitted)
{
    QVariantList row = {sample.name, sample.value};
    if (isCommitted)
        row[sample.column] = sample.committed;
    return row;
}

// A row whose edited values are the sample's, and whose shown ones others: a name that is none, or a value to come.
RoleModel *mixedModel(const DelegateSample &sample, QObject *parent)
{
    QVariantList shown = rowOf(sample, true);
    if (sample.column == 1)
        shown[0] = QStringLiteral("Nothing");
    auto *model = new RoleModel(shown, rowOf(sample, false));
    model->setParent(parent);
    return model;
}

bool isOneOf(const DelegateSample &sample, const QStringList &titles)
{
    return titles.contains(QLatin1String(sample.title));
}

// Those of truth values edit what they show.
bool editsTheShownValue(const DelegateSample &sample)
{
    return isOneOf(sample, {QStringLiteral("yes or no"), QStringLiteral("true or false")});
}

bool paintsTheEditedValue(const DelegateSample &sample)
{
    return isOneOf(sample, {QStringLiteral("frequency"), QStringLiteral("filter"), QStringLiteral("enumeration")});
}

QWidget *openEditor(const DelegateSample &sample, const QAbstractItemModel &model, QWidget *parent)
{
    QAbstractItemDelegate *delegate = sample.make(parent);
    const QModelIndex cell = model.index(0, sample.column);
    QWidget *editor = delegate->createEditor(parent, {}, cell);
    delegate->setEditorData(editor, cell);
    return editor;
}

QString stateOf(QWidget *editor)
{
    const QByteArray property = editor->metaObject()->userProperty().name();
    return QLatin1String(editor->metaObject()->className()) + QLatin1Char(' ') + editor->property(property).toString();
}

QImage look(const DelegateSample &sample, const QAbstractItemModel &model)
{
    QObject parent;
    QImage image(200, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = image.rect();
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    sample.make(&parent)->paint(&painter, option, model.index(0, sample.column));
    return image;
}

} // namespace

class TestDelegateRoles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theEditorOpensOnItsRole_data() { addDelegateSampleRows(); }
    void theEditorOpensOnItsRole();
    void theCellIsPaintedByItsRole_data() { addDelegateSampleRows(); }
    void theCellIsPaintedByItsRole();
    void theEditRoleIsWrittenOnce_data() { addDelegateSampleRows(); }
    void theEditRoleIsWrittenOnce();
    void theVariableIsThatOfTheEditedName();
};

void TestDelegateRoles::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QApplication::setStyle(QStyleFactory::create("fusion"));
}

void TestDelegateRoles::theEditorOpensOnItsRole()
{
    QFETCH(const DelegateSample *, sample);
    QWidget parent;
    const bool isShown = editsTheShownValue(*sample);
    const RoleModel right(rowOf(*sample, isShown), rowOf(*sample, isShown));
    const RoleModel wrong(rowOf(*sample, !isShown), rowOf(*sample, !isShown));
    const QString state = stateOf(openEditor(*sample, *mixedModel(*sample, &parent), &parent));
    QCOMPARE(state, stateOf(openEditor(*sample, right, &parent)));
    QVERIFY(state != stateOf(openEditor(*sample, wrong, &parent)));
}

void TestDelegateRoles::theCellIsPaintedByItsRole()
{
    QFETCH(const DelegateSample *, sample);
    QObject parent;
    const bool isShown = !paintsTheEditedValue(*sample);
    const RoleModel right(rowOf(*sample, isShown), rowOf(*sample, isShown));
    const RoleModel wrong(rowOf(*sample, !isShown), rowOf(*sample, !isShown));
    const QImage image = look(*sample, *mixedModel(*sample, &parent));
    QCOMPARE(image, look(*sample, right));
    QVERIFY(image != look(*sample, wrong));
}

void TestDelegateRoles::theEditRoleIsWrittenOnce()
{
    QFETCH(const DelegateSample *, sample);
    QWidget parent;
    QWidget *editor = openEditor(*sample, RoleModel(rowOf(*sample, true), rowOf(*sample, true)), &parent);
    RoleModel *model = mixedModel(*sample, &parent);
    const QModelIndex cell = model->index(0, sample->column);
    sample->make(&parent)->setModelData(editor, model, cell);
    QCOMPARE(model->writtenRoles, QList<int>{Qt::EditRole});
    if (sample->editor != QByteArray("QLineEdit") || sample->column == 0)
        QCOMPARE(cell.data(Qt::EditRole), sample->committed);
}

void TestDelegateRoles::theVariableIsThatOfTheEditedName()
{
    const AVeldoranVariableDelegate delegate;
    const RoleModel model({"Span", 1}, {"Squelch", 1});
    for (const int column : {0, 1}) {
        const device_variable_desc *desc = delegate.variableInfo(model.index(0, column));
        QVERIFY(desc);
        QCOMPARE(desc->name, "Squelch");
    }
}

QTEST_MAIN(TestDelegateRoles)
#include "tst_delegateroles.moc"
