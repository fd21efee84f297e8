#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <functional>
#include <memory>
#include <string>

#include "adapters/qt/Window.h"
#include "platform/UserInterface.h"
#include "qt/SampleWindows.h"

namespace kartix::tests {

/// Windows in memory, worked with as a clerk does.
class QtWindows : public testing::Test {
 protected:
  QtWindows();

  /// Shows `form` modally, runs `act` in it once it waits for the clerk, and ends it if it is still shown then.
  void show(forms::Form& form, const std::function<void(QDialog& window)>& act);

  /// The widget of a control in a window of the form.
  template <class W>
  static W& widget(const QWidget& window, const std::string& control) {
    auto* const found = window.findChild<W*>(adapters::qt::widgetName(control));
    if (!found) throw std::runtime_error("no widget for " + control);
    return *found;
  }

  std::unique_ptr<platform::UserInterface> clerk;
  SampleWindows samples;
};

/// Dispatches what is pending.
void settle();

}  // namespace kartix::tests
