// Time of CDataModel::Init on generated catalogues next to a bare QXmlStreamReader pass over the
// same file. Run from a build: build/tools/bench_catalogue
#include "model/CDataModel.h"
#include "support/MessageBoxSpy.h"
#include "support/TempAppDir.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <random>

namespace {
QByteArray makeCatalogue(int products, bool shuffled)
{
    std::vector<int> order(size_t(products), 0);
    for (int i = 0; i < products; ++i)
        order[size_t(i)] = i;
    if (shuffled)
        std::shuffle(order.begin(), order.end(), std::mt19937(42));

    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n  <App><Version>1.2.3</Version></App>\n"
                     "  <categories>\n    <name>FSX</name><path></path>\n"
                     "    <name>X-Plane 10</name><path>/Applications/X-Plane 10</path>\n"
                     "    <name>X-Plane 11</name><path>/Applications/X-Plane 11</path>\n  </categories>\n"
                     "  <datasets>\n    <name>xplane_native</name>\n    <name>fmc_procedures</name>\n  </datasets>\n"
                     "  <products>\n";
    for (int i : order) {
        const QByteArray n = QByteArray::number(i);
        xml += "    <name>Add-on " + n.rightJustified(6, '0') +
               "</name>\n"
               "    <dataset>" +
               (i % 3 ? "fmc_procedures" : "xplane_native") +
               "</dataset>\n"
               "    <product_path>$SimPath\\Aircraft\\Add-on " +
               n +
               "</product_path>\n"
               "    <install_path>$ProductPath\\navdata:\\addon" +
               n +
               "</install_path>\n"
               "    <install_path>$SimPath\\Custom Data:\\shared</install_path>\n"
               "    <cycle_info_path>$ProductPath\\navdata</cycle_info_path>\n"
               "    <category>" +
               (i % 10 == 9 ? "FSX"
                : i % 2     ? "X-Plane 11"
                            : "X-Plane 10") +
               "</category>\n"
               "    <update>" +
               (i % 7 ? "false" : "true") + "</update>\n";
    }
    xml += "  </products>\n</data>\n";
    return xml;
}

// The fastest of several runs, in milliseconds; f returns the nanoseconds of what it measured.
double bestOf(int runs, const std::function<qint64()>& f)
{
    double best = 1e30;
    for (int i = 0; i < runs; ++i)
        best = std::min(best, f() / 1e6);
    return best;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    MessageBoxSpy boxes;
    std::printf("%-8s %-9s %10s %12s %12s %7s\n", "products", "order", "file KB", "Init ms", "bare ms", "ratio");
    for (int products : {100, 1000, 5000}) {
        for (bool shuffled : {false, true}) {
            TempAppDir dir;
            dir.writeFile(QStringLiteral("bin/base_ini.xml"), makeCatalogue(products, shuffled));
            // No start-up update checks: only reading and linking is measured.
            dir.writeFile(QStringLiteral("bin/prop_ini.xml"),
                          "<data><App><DSAutoUpdate>0</DSAutoUpdate>"
                          "<QuillmarkAutoUpdate>0</QuillmarkAutoUpdate></App></data>");
            const QString path = dir.filePath(QStringLiteral("bin/base_ini.xml"));
            const int runs = products >= 5000 ? 5 : 15;

            int kept = 0;
            const double init = bestOf(runs, [&] {
                CDataModel model; // its log is written outside the measured part
                QElapsedTimer timer;
                timer.start();
                model.Init(QStringLiteral("bench"));
                const qint64 ns = timer.nsecsElapsed();
                kept = model.GetProductListSize();
                return ns;
            });
            int elements = 0;
            const double bare = bestOf(runs, [&] {
                QElapsedTimer timer;
                timer.start();
                QFile file(path);
                file.open(QIODevice::ReadOnly | QIODevice::Text);
                QXmlStreamReader xml(&file);
                elements = 0;
                while (!xml.atEnd()) {
                    if (xml.readNext() == QXmlStreamReader::StartElement)
                        ++elements;
                }
                return timer.nsecsElapsed();
            });
            std::printf("%-8d %-9s %10lld %12.2f %12.2f %6.2fx   (%d kept, %d elements, %d boxes)\n", products,
                        shuffled ? "shuffled" : "sorted", QFile(path).size() / 1024, init, bare, init / bare, kept,
                        elements, boxes.count());
        }
    }
    return 0;
}
