#pragma once
#include <QPointer>
#include <QWidget>

#include "config/settings.h"
#include "core/messages.h"

namespace zorvik {

// The boxes of the window: platform boxes, the self-closing information box and the question boxes with
// "Always"/"Never", whose answers for good live in the sections "HideInfoWin" and "HideQuestWin".
class QtMessageSink : public MessageSink {
 public:
  QtMessageSink(SettingsStore& settings, std::string instanceTitle);
  void setOwner(QWidget* owner) { owner_ = owner; }
  void setInstanceTitle(const std::string& title) { instanceTitle_ = title; }
  int show(BoxKind kind, const std::string& title, const std::string& text, const std::string& key) override;

 private:
  void infoBox(const std::string& text, const std::string& key);
  int questBox(const std::string& text, const std::string& key, bool withNever);

  SettingsStore& settings_;
  std::string instanceTitle_;
  QPointer<QWidget> owner_;
};

}  // namespace zorvik
