// tarrow — the suite's desktop host.
//
//   tarrow [--db URL] [--client CODE --year YYYY [--create] [--name NAME] [--status N]]
//          [--open SCREEN] [--screenshot FILE.png]
//
// Without --client the window opens the client used last when the database has it,
// else lists the clients, or, on a database without any, offers to create the first.
// With --screenshot the window is drawn (offscreen works), saved as a picture and the
// program ends.
#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QSettings>
#include <QTimer>
#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "app/tarrow/host.h"
#include "store/database.h"
#include "suite/output_file.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName("Tarrow");
    QApplication::setApplicationName("tarrow");

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{"db", "Database address (sqlite:PATH or mysql://...).", "url"},
         {"client", "Client code to open.", "code"},
         {"year", "Financial year to open (the year it ends in).", "year"},
         {"create", "Create the client's year when missing."},
         {"name", "Client name when creating.", "name"},
         {"status", "Client status 1-4 when creating.", "status"},
         {"open",
          "Open a screen: register, groups, company-blocks, income-tax-blocks, "
          "particulars, schedules, capital.",
          "screen"},
         {"screenshot", "Save a picture of the window (or of the opened screen) and quit.", "file"}});
    parser.process(app);

    brenlow::tarrow::HostWindow window;
    QString url = parser.value("db");
    if (url.isEmpty()) url = QSettings().value("database/url").toString();
    if (url.isEmpty()) url = QString::fromStdString(brenlow::store::default_database_url());
    const bool opened = window.open_database(url);

    if (opened) {
        const QString code = parser.value("client");
        const int year = parser.value("year").toInt();
        if (code.isEmpty()) {
            // No client named: the one used last, the list, or the offer to make one.
            window.first_start(!parser.isSet("screenshot"));
        } else {
            std::optional<int> status;
            if (parser.isSet("status")) status = parser.value("status").toInt();
            window.open_client_year(code, year, parser.isSet("create"), parser.value("name"), status);
        }
    }
    window.show();
    QWidget* shown = &window;
    if (opened && parser.isSet("open")) {
        QWidget* screen = window.open_by_name(parser.value("open"));
        if (!screen && parser.isSet("screenshot")) {
            std::fprintf(stderr, "tarrow: %s did not open\n", qPrintable(parser.value("open")));
            return 1;
        }
        if (screen) shown = screen;
    }

    if (parser.isSet("screenshot")) {
        QApplication::processEvents();
        const QString file = parser.value("screenshot");
        // Made in memory and written whole, by the rule every written file follows; the
        // option names a picture to make again on every run.
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        try {
            if (!shown->grab().save(&buffer, "PNG"))
                throw std::runtime_error("the picture could not be made");
            brenlow::suite::write_file_whole(file.toStdString(),
                                             std::string_view(png.constData(), png.size()),
                                             brenlow::suite::Existing::replace);
        } catch (const std::exception& e) {
            std::fprintf(stderr, "tarrow: could not save %s: %s\n", qPrintable(file), e.what());
            return 1;
        }
        std::printf("%s\n", qPrintable(file));
        return opened ? 0 : 1;
    }
    return app.exec();
}
