#pragma once

#include <QObject>

// Application-wide notifications that cross views: port renames and volume changes.
class SigManager : public QObject
{
    Q_OBJECT

public:
    static SigManager *instance();

signals:
    void Sig_UpdateVolumes();
    void Sig_RenameInputSignals(int inPut);
    void Sig_RenameInputAudioSignals(int inPut);
    void Sig_RenameInputHDMIAudioSignals(int input);

private:
    SigManager() = default;
};
