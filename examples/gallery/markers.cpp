#include "gallery.h"

#include <core/asimulateddevice.h>
#include <core/emu.h>
#include <marker/aspectrummarkerlist.h>
#include <views/aremoveselectiondelegate.h>

#include <QtGui/QStandardItemModel>

namespace {

// The markers of a simulated receiver, four times a second. A marker list is no item model: a table is filled from it.
class MarkerView : public QTableView
{
public:
    MarkerView()
        : m_table(0, 2)
    {
        ASpectrumMarker *highest = m_markers.addMarker(ASpectrumMarker::TypeMax, 0, AFrequency());
        for (int i = 1; i < 4; ++i)
            m_markers.addMarker(ASpectrumMarker::TypeMax, 0, AFrequency())->setReferenceMarker(highest);
        m_markers.addMarker(ASpectrumMarker::TypeMin, 0, AFrequency());
        m_markers.addMarker(ASpectrumMarker::TypeStd, 0, AFrequency("98.5 MHz"));

        setModel(&m_table);
        setItemDelegateForColumn(0, new ARemoveSelectionDelegate(true, this)); // whose colour is to be seen
        m_table.setHorizontalHeaderLabels({Gallery::tr("Color"), Gallery::tr("Marker")});
        horizontalHeader()->setStretchLastSection(true);
        setEditTriggers(NoEditTriggers);

        connect(&m_device, &ASweepProcessor::sweepFinished, this, [this](const ASweep &sweep) { show(sweep); });
        show(m_device.sweep(0));
        m_device.start(1, -1, 250);
    }

private:
    void show(const ASweep &sweep)
    {
        if (sweep.values.isEmpty())
            return;
        const emu_entry *unit = emu_find(sweep.values.first().unit);
        m_markers.updateMarkerValues(sweep.values, 0, sweep.values.first().frequency, sweep.values.last().frequency,
                                     unit->id, AFrequency("300 kHz"));
        m_table.setRowCount(m_markers.listcount());
        for (int row = 0; row < m_markers.listcount(); ++row) {
            constexpr int kHueStep = 50;
            const QColor color = QColor::fromHsv(row * kHueStep, 120, 240);
            m_table.setData(m_table.index(row, 0), color, Qt::BackgroundRole);
            m_table.setData(m_table.index(row, 1), m_markers.at(row)->labelItems(unit, nullptr).join(QLatin1Char(' ')));
        }
    }

    ASimulatedDevice m_device;
    ASpectrumMarkerList m_markers;
    QStandardItemModel m_table;
};

} // namespace

QWidget *gallery::makeMarkersTab()
{
    return new MarkerView;
}
