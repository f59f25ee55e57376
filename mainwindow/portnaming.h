#pragma once

#include <QString>

class QListWidget;

// Which port list a rename comes from; decides the table it is kept in and who is told.
enum class PortListKind { VideoInputs, VideoOutputs, AudioInputs, AudioOutputs, IrOutputs };

// Stores `name` for the current item of `list`, relabels the item and, for inputs,
// tells the other views through the signal hub. No current item: nothing happens.
void applyPortName(QListWidget *list, PortListKind kind, const QString &name);
