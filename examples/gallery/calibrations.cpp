#include "gallery.h"

#include <calibration/acalibrationobjectmodel.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTreeView>

namespace {

// The objects by type, and beside them the table of the current one. Edits go to the files at once, so the example's
// own are copied first.
class CalibrationEditor : public QSplitter
{
public:
    explicit CalibrationEditor(const QString &dataDir)
    {
        load(dataDir, "antennas.xml", ACalibrationData::Antenna);
        load(dataDir, "cables.caldata", ACalibrationData::Cable);
        load(dataDir, "preamplifier.offsets", ACalibrationData::Preamplifier);

        m_model = new ACalibrationObjectModel(this);
        m_objects = new QTreeView;
        m_entries = new QTableView;
        m_objects->setModel(m_model);
        m_entries->setModel(m_model);
        m_objects->setHeaderHidden(true); // it names the columns of the entries
        m_entries->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        addWidget(m_objects);
        addWidget(m_entries);

        connect(m_objects->selectionModel(), &QItemSelectionModel::currentChanged, this,
                [this](const QModelIndex &index) { showObject(index); });
        connect(m_model, &QAbstractItemModel::modelReset, this, &CalibrationEditor::restore); // which each edit brings
        restore();
        const QModelIndex antennas = m_model->index(ACalibrationData::Antenna, 0, m_objects->rootIndex());
        m_objects->setCurrentIndex(m_model->index(0, 0, antennas));
    }

private:
    void load(const QString &dataDir, const char *name, ACalibrationData::CalibrationType type)
    {
        const QString copy = m_files.filePath(QLatin1String(name));
        QFile file(dataDir + QStringLiteral("/calibration/") + QLatin1String(name));
        if (!file.copy(copy)) {
            gallery::tellError(Gallery::tr("%1: can't be copied").arg(file.fileName()));
            return;
        }
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        ADataManager::instance()->addCalibrationFile(copy, type);
    }

    void showObject(const QModelIndex &index)
    {
        constexpr int kObjectLevel = 2;
        if (index.data(ACalibrationObjectModel::LevelRole).toInt() != kObjectLevel)
            return;
        m_shown = m_model->getCalObject(index);
        m_entries->setRootIndex(index);
    }

    void restore()
    {
        m_objects->setRootIndex(m_model->index(0, 0));
        m_objects->expandToDepth(0);
        m_entries->setRootIndex(m_model->indexForObject(m_shown));
    }

    QTemporaryDir m_files;
    ACalibrationData m_shown;
    ACalibrationObjectModel *m_model;
    QTreeView *m_objects;
    QTableView *m_entries;
};

} // namespace

QWidget *gallery::makeCalibrationsTab(const QString &dataDir)
{
    return new CalibrationEditor(dataDir);
}
