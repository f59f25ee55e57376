#include "uploadreceiver.h"

#include "uploadformats.h"

namespace {

constexpr int MaxTransfer = 16 * 1024 * 1024; // beyond any EDID; bounds a stray upload's memory

} // namespace

QByteArray UploadReceiver::kindName(Kind kind)
{
    switch (kind) {
    case Kind::Osd: return "osd";
    case Kind::Caption: return "caption";
    case Kind::Edid: return "edid";
    }
    return QByteArray();
}

void UploadReceiver::receive(const QByteArray &bytes)
{
    // Once over the limit, later pieces would leave a hole: the transfer is lost whole.
    if (m_transferOverflow || m_transfer.size() + qint64(bytes.size()) > MaxTransfer) {
        m_transferOverflow = true;
        return;
    }
    m_transfer += bytes;
}

void UploadReceiver::start()
{
    m_transfer.clear();
    m_transferOverflow = false;
}

void UploadReceiver::announce(Kind kind, int port)
{
    m_kind = kind;
    m_port = port;
}

UploadReceiver::Finished UploadReceiver::finish()
{
    Finished finished;
    const Kind kind = m_kind;
    const int port = m_port;
    const bool overflow = m_transferOverflow;
    const QByteArray bytes = m_transfer;
    m_port = 0;
    start();
    // Without an announcement the bytes were only paced.
    if (port == 0)
        return finished;

    const QByteArray subject = kind == Kind::Edid
        ? "edid " + QByteArray::number(port)
        : "upload " + kindName(kind) + ' ' + QByteArray::number(port);
    // A transfer not taken leaves what the port had: a cut-off file is worse than the old one.
    if (overflow) {
        finished.note = subject + ": over " + QByteArray::number(MaxTransfer) + " bytes, kept";
        return finished;
    }
    if (bytes.isEmpty()) {
        finished.note = subject + ": nothing received, kept";
        return finished;
    }
    m_uploads.insert({kind, port}, bytes);
    finished.upload = Upload{kind, port, bytes};
    if (kind == Kind::Edid) {
        finished.note = UploadFormats::edidNote(port, bytes);
        return finished;
    }
    finished.note = subject + ": " + QByteArray::number(bytes.size()) + " bytes, ";
    const std::optional<UploadFormats::BmpHeader> bmp = UploadFormats::bmpHeader(bytes);
    if (!bmp) {
        finished.note += "not a bmp";
        return finished;
    }
    finished.note += "bmp " + QByteArray::number(bmp->width) + 'x' + QByteArray::number(qAbs(bmp->height)) + ", "
        + QByteArray::number(bmp->bitCount) + " bit" + (bmp->height < 0 ? ", top-down" : "");
    return finished;
}
