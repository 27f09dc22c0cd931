#include "platform/forms/form_manager.h"

#include <algorithm>

#include "platform/clock.h"
#include "platform/forms/controls.h"
#include "platform/services.h"

namespace dpm {

FormManager& Forms() {
  static FormManager manager;
  return manager;
}

Form* FormManager::Find(const std::string& name) const {
  for (const auto& form : loaded_) {
    if (form->Name() == name) return form.get();
  }
  return nullptr;
}

void FormManager::Unload(const std::string& name) {
  if (Form* form = Find(name)) form->Unload();
}

std::vector<Form*> FormManager::LoadedForms() const {
  std::vector<Form*> forms;
  for (const auto& form : loaded_) forms.push_back(form.get());
  return forms;
}

Form& FormManager::Adopt(std::unique_ptr<Form> owned) {
  Form& form = *owned;
  loaded_.push_back(std::move(owned));
  if (viewFactory_) form.SetView(viewFactory_(form));
  if (form.on.Load) {
    HandlerScope scope(form);
    form.on.Load();
  }
  return form;
}

void FormManager::Activate(Form& form) {
  if (form.unloaded_ || !form.visible_ || active_ == &form) return;
  Form* previous = active_;
  active_ = &form;
  history_.erase(std::remove(history_.begin(), history_.end(), &form), history_.end());
  history_.push_back(&form);
  if (previous != nullptr && previous->on.Deactivate) {
    HandlerScope scope(*previous);
    previous->on.Deactivate();
  }
  form.Notify(FormProperty::Active);
  if (form.on.Activate) {
    HandlerScope scope(form);
    form.on.Activate();
  }
}

void FormManager::Hidden(Form& form) {
  if (active_ != &form) return;
  active_ = nullptr;
  if (!form.unloaded_ && form.on.Deactivate) {
    HandlerScope scope(form);
    form.on.Deactivate();
  }
  if (active_ != nullptr) return;  // the handler showed another form
  for (auto it = history_.rbegin(); it != history_.rend(); ++it) {
    Form* candidate = *it;
    if (candidate != &form && candidate->visible_ && !candidate->unloaded_) {
      Activate(*candidate);
      return;
    }
  }
}

void FormManager::UserActivate(Form& form) {
  if (ModalBlocks(form)) return;
  Activate(form);
}

bool FormManager::ModalBlocks(const Form& form) const {
  for (const auto& other : loaded_) {
    if (other.get() != &form && other->visible_ && other->modal_) return true;
  }
  return false;
}

void FormManager::Remove(Form& form) {
  auto it = std::find_if(loaded_.begin(), loaded_.end(), [&](const auto& f) { return f.get() == &form; });
  if (it == loaded_.end()) return;
  form.unloaded_ = true;
  form.visible_ = false;
  form.view_.reset();
  unloaded_.push_back(std::move(*it));
  loaded_.erase(it);
  history_.erase(std::remove(history_.begin(), history_.end(), &form), history_.end());
  Hidden(form);
  Reap();
}

void FormManager::Reap() {
  std::vector<std::unique_ptr<Form>> done;
  for (auto it = unloaded_.begin(); it != unloaded_.end();) {
    if ((*it)->busy_ == 0) {
      done.push_back(std::move(*it));
      it = unloaded_.erase(it);
    } else {
      ++it;
    }
  }
}

void FormManager::ServeTimers() {
  Clock* clock = Platform().clock;
  if (clock == nullptr) return;
  // By name: a timer's handler may unload any form, this one or the next.
  std::vector<std::string> names;
  for (const auto& form : loaded_) names.push_back(form->Name());
  for (const std::string& name : names) {
    Form* form = Find(name);
    if (form == nullptr) continue;
    HandlerScope keepAlive(*form);
    std::vector<Timer*> timers;
    for (Control* c : form->Controls()) {
      if (c->Kind() == ControlKind::Timer && c->View() == nullptr) timers.push_back(static_cast<Timer*>(c));
    }
    for (Timer* timer : timers) {
      if (form->unloaded_) break;
      timer->Poll(clock->Milliseconds());
    }
  }
}

void FormManager::End() {
  ended_ = true;
  if (endAction_) endAction_();
}

void FormManager::Reset() {
  for (auto& form : loaded_) form->view_.reset();
  for (auto& form : unloaded_) form->view_.reset();
  std::vector<std::unique_ptr<Form>> dropped;
  dropped.swap(loaded_);
  for (auto& form : unloaded_) dropped.push_back(std::move(form));
  unloaded_.clear();
  history_.clear();
  active_ = nullptr;
  viewFactory_ = {};
  endAction_ = {};
  ended_ = false;
  dropped.clear();
}

}  // namespace dpm
