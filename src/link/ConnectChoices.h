#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

namespace tessmar {

/// The port name of a list entry: blanks at the ends cut off, then what stands before the first
/// blank, in capitals. "com3 - USB Serial Port" gives "COM3".
QString ExtractPort(const QString& entry);

/// The number of a port name: "COM3" gives 3. Throws ConversionFault when no number stands behind
/// the first three characters.
std::int16_t PortNumber(const QString& portName);

/// What the port lists offer: COM1 to COM8 always, COM9 to COM16 only when enumerated, in the order
/// of their numbers; an enumerated port with its friendly name.
/// @param enumerated  entries of the form "COM3 - USB Serial Port"; the first of a port counts.
QStringList PortItems(const QStringList& enumerated);

/// The speeds of a direct line and of a modem.
QStringList DirectBaudItems();
QStringList ModemBaudItems();

/// The item that is selected at first: the one of the last port or speed, compared exactly, or else
/// the usual one.
int InitialPortIndex(const QStringList& items, const QString& lastPort);
int InitialDirectBaudIndex(const QString& lastBaud);
int InitialModemBaudIndex(const QString& lastBaud);

}  // namespace tessmar
