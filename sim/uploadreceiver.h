#pragma once

#include <QByteArray>
#include <QMap>
#include <QPair>

#include <optional>

// The device's side of the file port: the bytes of the transfer in progress,
// the announcement that says what they are, and the last file taken for each
// kind and port. Transfers end with "{param=Done}" on the command port.
class UploadReceiver
{
public:
    enum class Kind { Osd, Caption, Edid };

    // A transfer the device took: the file-port bytes up to "{param=Done}",
    // announced by Upload_OSD<port>, Upload_Subtitle<port> or Update_EDID<port>.
    struct Upload
    {
        Kind kind = Kind::Osd;
        int port = 0;
        QByteArray bytes;
    };

    struct Finished
    {
        std::optional<Upload> upload; // empty when nothing was taken
        QByteArray note;              // one line for the verbose log; empty without an announcement
    };

    static QByteArray kindName(Kind kind); // "osd", "caption", "edid"

    // The file connection's bytes. A transfer is what arrives after the
    // previous "{param=Done}" or the connection's start: the application
    // sends its announcement and the first piece together, so that piece
    // may arrive before the announcement does.
    void receive(const QByteArray &bytes);
    void start();
    // An upload announcement decides what the current transfer is.
    void announce(Kind kind, int port);
    // "{param=Done}": takes the transfer, if announced and whole, and starts the next.
    Finished finish();

    // The last transfer taken for that kind and port, byte for byte; empty
    // when none. Default keeps it: it records what arrived, not what is shown.
    QByteArray lastUpload(Kind kind, int port) const { return m_uploads.value({kind, port}); }

private:
    QByteArray m_transfer;
    bool m_transferOverflow = false;
    Kind m_kind = Kind::Osd;
    int m_port = 0;     // port of the last announcement; 0: none, the bytes are only paced
    QMap<QPair<Kind, int>, QByteArray> m_uploads;
};
