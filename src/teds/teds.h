#pragma once

#include <array>
#include <cstdint>
#include <string>

// The data sheet of a load cell, as the meter passes it through: fetched once as 116
// hexadecimal digits (g.TedsHex), expanded to 464 bits (g.TedsBits) and decoded field by
// field for setup page 3 and the front-panel menu view. Nothing is written back.
namespace dpm {

// g.TedsTemplate until the data sheet is fetched; the main menu sets it on each visit.
inline constexpr int16_t kTedsNotFetched = 99;

// The measurand units, seven characters each, as the display shows them.
inline constexpr std::array<const char*, 16> TedsUnitsTable = {
    "    N  ", "   Lb  ", "   KgF ", "    Nm ", "  oz-in", "    Pa ", "   psi ", "   None",
    "    g  ", "   oz  ", "   ton ", "  ton m", "  ft-Lb", "  in-Lb", "   bar ", " Error "};

// Expands g.TedsHex into g.TedsBits: four bits a digit, most significant first, always 464
// characters "0" and "1".
void TedsFetch();

// The bits as hexadecimal digits, four bits a digit. `bits` is left-filled with "0" to a
// whole number of digits, in place.
std::string BitsToHex(std::string& bits);

// The unsigned value of the bits as number text (a leading blank, as all number text has).
std::string BitsToNumber(const std::string& bits);

// When the meter has a data sheet and it hasn't been fetched since the last visit to the
// main menu: asks the meter for it ("XTA0"), expands it and sets g.TedsTemplate. A failed
// exchange is not reported; whatever the reply text holds is decoded.
void FetchTedsIfNeeded();

// The decoded fields of the fetched data sheet.
std::string TedsSerialDigits();                       // decimal digits, no blanks
std::string TedsSerialNumber(std::string& rowLabel);  // last six digits in seven; the menu row's label
std::string TedsUnits();                              // an entry of TedsUnitsTable
std::string TedsCalDate();                            // "mmddyy "
std::string TedsCalPeriod();                          // days, right-aligned in seven
std::string TedsCalInitials();                        // "  c b a": the three stored letters, reversed
std::string TedsBridgeId();                           // " Brdg-" and a letter

}  // namespace dpm
