// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

namespace cvtamber {

// A control inside a row. What a person does with it comes back as TableViewController::controlActivated with its id.
struct CellControl
{
    Q_GADGET
    Q_PROPERTY(int id MEMBER id CONSTANT)
    Q_PROPERTY(Kind kind MEMBER kind CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString accessibleName MEMBER accessibleName CONSTANT)
    Q_PROPERTY(bool enabled MEMBER isEnabled CONSTANT)
    Q_PROPERTY(bool on MEMBER isOn CONSTANT)

public:
    enum class Kind { Button, Switch, ActivityIndicator };
    Q_ENUM(Kind)

    int id = 0;
    Kind kind = Kind::Button;
    QString title;
    // With the row it belongs to ("Refresh files"); the title where it says enough.
    QString accessibleName;
    bool isEnabled = true;
    // For Switch.
    bool isOn = false;

    bool operator==(const CellControl &) const = default;
};

// One row of a table as a value.
struct TableCell
{
    Q_GADGET

public:
    enum class Style {
        Default,  // text alone, or one filling control
        Value1,   // text left, detail right
        Value2,   // small label left, detail beside it, controls right
        Subtitle, // text with the detail under it
        Wait,     // an activity indicator
        Action,   // one button that fills the row
        Centered, // text in the middle: what an empty list says
    };
    Q_ENUM(Style)
    enum class Accessory { None, Disclosure, DetailDisclosure };
    Q_ENUM(Accessory)
    // How the detail is coloured; what it means is said by its words.
    enum class Tone { Normal, Success };
    Q_ENUM(Tone)

    Style style = Style::Default;
    QString text;
    QString detail;
    Tone detailTone = Tone::Normal;
    // Name of an image in the program's resources; decoration.
    QString image;
    Accessory accessory = Accessory::None;
    // What the detail button does, with the row's name ("Edit Ann Lee").
    QString accessoryName;
    QList<CellControl> controls;
    bool isEnabled = true;
    bool canHighlight = true;
    // What the row leads to stands beside the table.
    bool isOpen = false;
    // What a screen reader says for the row; text and detail where it is empty.
    QString accessibleName;

    bool operator==(const TableCell &) const = default;
};

} // namespace cvtamber
