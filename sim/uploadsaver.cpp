#include "uploadsaver.h"

#include "uploadformats.h"

#include <QDir>
#include <QRegularExpression>
#include <QSaveFile>

#include <cstdio>

UploadSaver::UploadSaver(const QString &dir)
    : m_dir(dir)
{
}

void UploadSaver::save(const UploadReceiver::Upload &upload)
{
    QDir dir(m_dir);
    if (!dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "orvex-sim: cannot create %s, upload not saved\n", qPrintable(dir.path()));
        std::fflush(stderr);
        return;
    }
    if (m_saved < 0) {
        // Numbering goes on after an earlier run's files instead of replacing them.
        static const QRegularExpression saved(QStringLiteral(R"(^(osd|caption|edid)-\d+-(\d+)\.(bmp|bin)$)"));
        m_saved = 0;
        for (const QString &name : dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            const QRegularExpressionMatch match = saved.match(name);
            if (match.hasMatch())
                m_saved = qMax(m_saved, match.captured(2).toInt());
        }
    }
    const bool bmp = upload.kind != UploadReceiver::Kind::Edid && UploadFormats::bmpHeader(upload.bytes);
    const QString name = QStringLiteral("%1-%2-%3.%4")
                             .arg(QString::fromLatin1(UploadReceiver::kindName(upload.kind)))
                             .arg(upload.port)
                             .arg(++m_saved, 4, 10, QLatin1Char('0'))
                             .arg(bmp ? QStringLiteral("bmp") : QStringLiteral("bin"));
    // QSaveFile: a reader never sees half a file, and a failed write leaves none.
    QSaveFile file(dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(upload.bytes) != upload.bytes.size() || !file.commit()) {
        std::fprintf(stderr, "orvex-sim: cannot save %s: %s\n", qPrintable(file.fileName()),
                     qPrintable(file.errorString()));
        std::fflush(stderr);
    }
}
