// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewer's logic and state, without a window: the open documents, the page in front, the matches of Find, and the
// status line. A window calls the operations below, shows what draw() has drawn, and reads the rest.
//
// All of it runs on the thread that plug-ins run on. Opening, rendering and searching are done by other threads. They
// call `wake`, after which the owner calls collect() soon.
#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/view/application.h"
#include "viewer/model/cache.h"
#include "viewer/model/renderer.h"
#include "viewer/model/searcher.h"
#include "viewer/model/target.h"

namespace viewer {

/// Questions to the user.
class Questions {
public:
  virtual ~Questions() = default;
  /// A file is encrypted: a password is needed, or another one. The answer, if any, is a call of Session::open.
  virtual void askPassword(const Target &target, bool again) = 0;
};

/// The find dialog's contents.
struct FindRequest {
  std::string text;
  host::FindOptions options;
  bool operator==(const FindRequest &other) const {
    return text == other.text && options.matchCase == other.options.matchCase &&
           options.wholeWords == other.options.wholeWords;
  }
};

/// What the page area shows: a drawing, or the outline of a page that is still being rendered.
struct Shown {
  std::optional<host::Drawing> drawing; ///< none: the outline is shown
  bool document = false;                ///< whether a document is open
  int32_t page = 0;
  double dpi = 0;
  int pageWidth = 0, pageHeight = 0; ///< of the complete page, in pixels
  int scrollX = 0, scrollY = 0;      ///< at the time of the drawing
};

class Session {
public:
  Session(host::Application &app, const std::function<void()> &wake);
  ~Session(); ///< closes the documents
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  Questions *questions = nullptr;

  // ---- documents

  /// Opens a file; once it is open it is in front. A file that is open already is brought to front instead, unless the
  /// parameters differ.
  void open(const Target &target, const std::string &password = {});
  /// Whether a file is still being opened.
  bool opening() const { return !pending_.empty(); }
  /// Whether a password has been asked for.
  bool asksPassword() const { return asksPassword_; }
  void closeFront();
  void closeAll();
  /// Ends rendering and searching and waits for both up to the timeout; false if a page is still in progress.
  bool finish(std::chrono::milliseconds timeout);
  /// Opens the front document's file again, on the same page. Until it is open, and if it cannot be opened any more,
  /// the document stays as it is.
  void reload();
  void bringToFront(size_t index);
  /// In the order in which they were opened.
  const std::vector<host::ViewerDocument *> &documents() const { return order_; }
  host::ViewerDocument *front() const { return app_.front(); }
  host::PageView *view() const { return front() == nullptr ? nullptr : front()->view.get(); }
  size_t frontIndex() const;

  // ---- the page

  /// The resolution of 100 %. To be set before the first collect().
  void setScreenDpi(double dpi) { screenDpi_ = dpi; }
  void setWindow(int width, int height, int margin);
  int32_t pageCount() const;
  int32_t page() const;
  /// The number is clamped to the existing pages.
  void goToPage(int32_t page);
  /// Turns by that many pages.
  void turn(int32_t pages);
  /// Scrolls by pixels; at an end of the page it turns the page.
  void scroll(int dx, int dy);
  /// Scrolls by pixels and stays on the page.
  void drag(int dx, int dy);
  /// Scrolls by a page of the window, up (-1) or down (1).
  void scrollWindow(int direction);
  /// The position in the document, which the scroll bar shows and sets: the page from 0, plus the part of it above the
  /// window.
  double position() const;
  void setPosition(double position);
  /// The visible part of the page, from 0 to 1.
  double visibleShare() const;

  double zoom() const; ///< 1 is 100 %
  void zoomBy(int steps);
  void setZoom(double zoom);
  host::Fit fit() const { return view() == nullptr ? fit_ : view()->fit(); }
  void setFit(host::Fit fit);

  // ---- find

  const FindRequest &findRequest() const { return request_; }
  void find(const FindRequest &request, bool backwards);
  void findAgain(bool backwards) { find(request_, backwards); }
  bool searching() const { return searching_; }
  /// Ends a search and removes its marks.
  void endFinding();
  /// The outcome of the last search, for the dialog.
  const std::string &findMessage() const { return findMessage_; }

  // ---- the plug-ins' buttons on the tool bar

  /// Presses a button while the modifier keys (ModifierKey) are held. False if it is greyed.
  bool press(host::ToolButton &button, uint32_t modifiers);

  // ---- showing

  /// Takes over the threads' results. If memory is exhausted for one of them, the following ones are taken over
  /// nevertheless; the rest stays for the next call, which `wake` requests, and the failure is thrown at the end.
  void collect();
  /// Whether draw() has something to do now: not during a call of a plug-in, nor while the outline of a page that is
  /// being rendered is shown.
  bool needsDrawing() const;
  /// Draws the page in front, unless a plug-in is being called; true if there is something new to show.
  bool draw();
  /// Adds what plug-ins have highlighted (PageViewHighlightText) to the drawing shown, also during a call of a plug-in;
  /// true if there is something new to show. The drawing itself stays, and no plug-in is called.
  bool showHighlights();
  /// Called when the page in front is invalid or its highlights have changed, during the call of the plug-in.
  std::function<void()> pageListener;
  const Shown &shown() const { return shown_; }
  /// Since when the window has been waiting for the page in front.
  std::optional<std::chrono::steady_clock::time_point> waitingSince() const { return waitingSince_; }
  /// The error of the page in front, or empty.
  std::string pageError() const;

  /// A counter of changes that a window may have to show.
  uint64_t changes() const { return changes_; }
  void touch() { ++changes_; }
  /// The viewer's text on the status line. Errors are printed to standard error, too.
  const std::string &message() const { return message_; }
  void setMessage(std::string line);
  void reportError(std::string line);
  std::string title() const;
  std::vector<int32_t> markedPages() const;

  const PageCache &cache() const { return cache_; }

  static constexpr size_t cacheBytes = size_t{64} * 1024 * 1024;

private:
  struct OpenDocument {
    uint64_t number = 0;
    host::ViewerDocument *document = nullptr;
    Target target;
    std::string password;
    std::map<int32_t, std::string> errors; ///< by page
    std::vector<int32_t> withWords;        ///< pages whose words are kept, the most recently shown last
  };
  struct Pending {
    uint64_t number = 0;
    Target target;
    std::string password;
    std::optional<uint64_t> replaces; ///< the open document that is being reloaded
  };
  struct FoundOnPage {
    host::ViewerDocument *document = nullptr;
    int32_t page = 0;
    std::vector<host::Found> found;
    size_t current = 0;
  };

  void request(Pending pending);
  template <typename Step> bool attempt(const Step &step);
  void takeOpened(OpenedFile &opened);
  void takeDocument(const Pending &pending, std::unique_ptr<host::PdfFile> pdf);
  void replace(OpenDocument &before);
  void showFront();
  void clearOpeningMessage();
  void takeRendered(RenderedPage &page);
  void takeFound(SearchResult &result);
  void showProgress();
  void close(OpenDocument &document);
  void requestPages();
  void prepare(host::ViewerDocument &document);
  const host::Image *pageImage(host::ViewerDocument &document, int32_t page, double dpi);
  void paintFound(host::Drawing &drawing) const;
  void reportOffPage(const host::Drawing &drawing);
  void showFound(std::string line);
  void drawPage(host::PageView &drawn);
  OpenDocument *find(const host::ViewerDocument *document) const;
  OpenDocument *find(uint64_t number) const;
  void forgetWords(int32_t shown);
  bool outlineIsShown() const;

  host::Application &app_;
  std::function<void()> wake_;
  double screenDpi_ = 96;
  host::Fit fit_ = host::Fit::width;
  int windowWidth_ = 0, windowHeight_ = 0, margin_ = 0;
  std::vector<std::unique_ptr<OpenDocument>> open_;
  std::vector<host::ViewerDocument *> order_;
  std::vector<Pending> pending_;
  uint64_t numbers_ = 0;
  bool asksPassword_ = false;
  Renderer::Results arrived_; ///< not taken over yet
  std::optional<SearchResult> searched_;
  std::exception_ptr failure_; ///< the first failure of a collect()
  int failures_ = 0;           ///< consecutive calls of collect() that failed
  PageCache cache_{cacheBytes};
  Shown shown_;
  uint64_t shownDocument_ = 0;                   ///< the number of the document drawn
  std::vector<host::MarkedArea> highlights_;     ///< on the drawing shown
  std::optional<host::Image> withoutHighlights_; ///< the drawing without highlights, if it has any
  std::optional<std::chrono::steady_clock::time_point> waitingSince_;
  FindRequest request_;
  std::optional<FoundOnPage> found_;
  bool searching_ = false;
  bool wrapsAtOnce_ = false;
  std::string findMessage_, message_, openingLine_, offPageLine_;
  uint64_t changes_ = 1;
  Renderer renderer_; ///< last: the threads are destroyed first
  Searcher searcher_;
};

} // namespace viewer
