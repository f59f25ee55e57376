#pragma once

#include "uploadreceiver.h"

#include <QString>

// Writes every finished upload into one folder, one file each, named
// kind-port-sequence: osd-3-0001.bmp, caption-2-0002.bmp, edid-4-0003.bin.
class UploadSaver
{
public:
    explicit UploadSaver(const QString &dir);

    // Failures go to stderr: the upload itself has still been taken.
    void save(const UploadReceiver::Upload &upload);

private:
    QString m_dir;
    int m_saved = -1;  // sequence number of the last file saved; -1: folder not read yet
};
