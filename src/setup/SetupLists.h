#pragma once

#include <QStringList>

namespace tessmar {

/// The lists of the setup screen. The position in a list is what the settings store, except for the
/// units of channels, whose text is stored and whose lists are suggestions.

/// Units that an analog channel usually has, 23 of them, in the current language.
QStringList AnalogUnits();
/// Units that a pulse channel usually has, 7 of them, in the current language.
QStringList PulseUnits();

QStringList WarmupItems();          ///< "0" to "60" seconds.
QStringList PrecisionItems();       ///< "0" to "6" decimal places.
QStringList SampleIntervalItems();  ///< seconds, minutes, hours, days, in the current language.
QStringList BaudItems();            ///< Automatic, then six fixed rates, in the current language.
QStringList AlarmHalfDayItems();    ///< "A.M.", "P.M." in every language.

/// Analog channels that the DO page offers: "1" up to the channel count, but never "8".
QStringList DoChannelItems(int analogChannelCount);
/// Units of the DO page, the same in every language.
QStringList PO2UnitItems();
QStringList WaterTempUnitItems();
QStringList ConductivityUnitItems();
QStringList AirPressureUnitItems();
QStringList O2ConcentrationUnitItems();

}  // namespace tessmar
