// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <deque>
#include <functional>

#include "controls/ui/userdialogs.h"
#include "controls/waitbudget.h"

namespace krx {

/// The one gate that every box and file dialog of a run goes through. A box runs the event loop: opened inside a
/// transfer it would keep that transfer, and with it the cycle and the program's end, waiting for its OK. So a box that
/// is asked for while something is under way on the bus opens once that has ended, and the boxes that wait with one
/// title are one. A debug build also stops at any other modal window that is shown inside a transfer.
class GatedDialogs : public QObject, public UserDialogs {
 public:
  /// shown: what opens the boxes. busy: whether a transfer or a turn is under way. All are to outlive the gate.
  GatedDialogs(UserDialogs& shown, WaitBudget& waits, std::function<bool()> busy);
  ~GatedDialogs() override;

  // These return at once when the box has to wait.
  void Critical(const QString& text, const QString& title = {}) override;
  void Exclamation(const QString& text, const QString& title = {}) override;
  void Information(const QString& text, const QString& title = {}) override;

  // These answer, so they cannot wait: to be asked for by the user's input only, which is never delivered inside a
  // transfer. There they are cancelled.
  bool Ask(const QString& text, const QString& yes, const QString& title = {}) override;
  std::optional<QString> SaveFile(const QString& filter, const QString& proposedName = {}) override;
  std::optional<QString> OpenFile(const QString& filter, const QString& proposedName = {}) override;

  /// As long as one lives no box opens. What was asked for meanwhile comes from the event loop afterwards.
  class Together {
   public:
    explicit Together(GatedDialogs& gate) : gate_(gate) { ++gate_.together_; }
    ~Together() {
      --gate_.together_;
      gate_.PutOff();
    }
    Together(const Together&) = delete;
    Together& operator=(const Together&) = delete;

   private:
    GatedDialogs& gate_;
  };

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Kind { Information, Exclamation, Critical };  ///< the graver the later
  struct Box {
    Kind Icon;
    QStringList Texts;
    QString Title;
  };

  void Request(Kind icon, const QString& text, const QString& title);
  void PutOff();
  void OpenWaiting();
  void Open(const Box& box);

  UserDialogs& shown_;
  WaitBudget& waits_;
  std::function<bool()> busy_;
  std::deque<Box> waiting_;
  int together_ = 0;
  bool open_ = false;
};

}  // namespace krx
