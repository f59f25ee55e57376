#pragma once

#include <QMap>
#include <QObject>
#include <QString>

// The port names the views show: the operator's names from the port-name
// tables, with a default label for every unnamed input. One object per window,
// handed to the views that show or rename ports.
class PortNames : public QObject
{
    Q_OBJECT

public:
    enum Kind { VideoInput, VideoOutput, AudioInput, AudioOutput, IrOutput };

    explicit PortNames(QObject *parent = nullptr);

    // Creates the tables project.db lacks; only worth it on a readable store.
    void createTables();

    // Re-reads the input names of ports 1..inputs; defaults ("Input n", "Audio n")
    // are translated at this moment, so they follow the language.
    void loadInputs(int inputs);

    // Inputs as last loaded (with defaults); outputs as stored (no defaults), read
    // once: every rename goes through this object, which keeps them current.
    QMap<int, QString> names(Kind kind) const;
    QString name(Kind kind, int port) const { return names(kind).value(port); }

    // Stores the name; an input's name is shown at once. False when project.db
    // refused it: the name is then neither stored nor shown.
    bool rename(Kind kind, int port, const QString &name);

private:
    QMap<int, QString> &outputs(Kind kind) const;

    QMap<int, QString> m_inputs;
    QMap<int, QString> m_audioInputs;
    // Output names by kind, filled on first use.
    mutable QMap<Kind, QMap<int, QString>> m_outputs;
};
