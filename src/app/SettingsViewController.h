// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TableViewController.h"

namespace cvtamber {

class Locations;
class UserDefaults;

// The settings window: whether documents are kept in the cloud, in which folder, and what is missing for it.
//
// It only writes the user defaults "iCloudOn" and "cloudFolder"; the application acts when it becomes active.
// Thread: main thread. Owner: the window. What is given outlives it.
class SettingsViewController final : public TableViewController
{
    Q_OBJECT

public:
    enum Control : int { CloudSwitch = 1 };
    enum class Status { Local, LocalUnusable, NothingChosen, Missing, NotWritable, Cloud };

    SettingsViewController(Presenter &presenter, UserDefaults &defaults, Locations &locations);

    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;
    QString titleForHeader(int section) const override;
    quintptr rowIdentity(IndexPath path) const override;

    Status status() const;
    // Folders come and go while another program is in front.
    void refresh();

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;
    void didSelectRow(IndexPath path) override;
    void controlActivated(IndexPath path, int control, bool on) override;

private:
    enum Row : int { SwitchRow, FolderRow, StatusRow, AdviceRow, RowCount };

    QString cloudFolder() const;
    QString statusText() const;
    QString adviceText() const;
    void tellStatus();
    void askForFolder();
    void chooseFolder(const QString &typed);

    UserDefaults &_defaults;
    Locations &_locations;
};

} // namespace cvtamber
