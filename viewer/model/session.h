// What the viewer does and shows, without a window: the open documents, the page in front, what is found, and what the
// status line says. A window calls the deeds below, draws what draw() gives, and asks for the rest.
//
// All of it runs on the thread that plug-ins run on. Opening, rendering and searching are done by threads; `wake` tells
// the owner, from any thread, to call collect() soon.
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

/// What the window is asked for besides its looks.
class Questions {
public:
  virtual ~Questions() = default;
  /// A file wants a password, or another one; sooner or later Session::open is called again, or not.
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
  std::optional<host::Drawing> drawing; ///< none: the outline
  bool document = false;                ///< whether there is a document at all
  int32_t page = 0;
  double dpi = 0;
  int pageWidth = 0, pageHeight = 0; ///< of the whole page, in pixels
  int scrollX = 0, scrollY = 0;      ///< when it was drawn
};

class Session {
public:
  Session(host::Application &app, const std::function<void()> &wake);
  ~Session(); ///< closes the documents
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  Questions *questions = nullptr;

  // ---- documents

  /// Opens a file; it is in front when it is there. One that is open already comes to front instead, unless it is to be
  /// opened with other parameters.
  void open(const Target &target, const std::string &password = {});
  /// Whether a file is still being opened.
  bool opening() const { return !pending_.empty(); }
  /// Whether a password has been asked for.
  bool asksPassword() const { return asksPassword_; }
  void closeFront();
  void closeAll();
  /// Ends the rendering and the searching and waits so long for both; false where a page is still under way.
  bool finish(std::chrono::milliseconds timeout);
  /// Opens the front document's file anew, on the same page; until it is there, and where it cannot be opened any more,
  /// the document stays as it is.
  void reload();
  void bringToFront(size_t index);
  /// In the order in which they were opened.
  const std::vector<host::ViewerDocument *> &documents() const { return order_; }
  host::ViewerDocument *front() const { return app_.front(); }
  host::PageView *view() const { return front() == nullptr ? nullptr : front()->view.get(); }
  size_t frontIndex() const;

  // ---- the page

  /// What 100 % means; before the first collect().
  void setScreenDpi(double dpi) { screenDpi_ = dpi; }
  void setWindow(int width, int height, int margin);
  int32_t pageCount() const;
  int32_t page() const;
  /// Cut to the pages that there are.
  void goToPage(int32_t page);
  /// Turns that many pages.
  void turn(int32_t pages);
  /// Scrolls by pixels; at an end of the page it turns.
  void scroll(int dx, int dy);
  /// Scrolls by pixels and stays on the page.
  void drag(int dx, int dy);
  /// Scrolls by a windowful, up (-1) or down (1).
  void scrollWindow(int direction);
  /// A place in the whole document: pages from 0, and how far down that page. What the scroll bar shows and sets.
  double place() const;
  void setPlace(double place);
  /// The part of the page that is visible, of 1.
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
  /// Ends a search, and takes the marks of what was found away.
  void endFinding();
  /// What became of the last search, for the dialog.
  const std::string &findMessage() const { return findMessage_; }

  // ---- what plug-ins put on the tool bar

  /// Presses a button, with the modifier keys (ModifierKey) held meanwhile. False when it is greyed.
  bool press(host::ToolButton &button, uint32_t modifiers);

  // ---- showing

  /// Takes over what the threads have done. Where that fails for lack of memory, what follows is taken over all the
  /// same; the rest stays for the next call, which `wake` asks for, and the failure is thrown at the end.
  void collect();
  /// Whether draw() has something to do now: not while a plug-in is called, nor while the page is awaited and its
  /// outline is shown.
  bool needsDrawing() const;
  /// Draws the page in front, unless a plug-in is being called; true when there is something new to show.
  bool draw();
  /// Brings what plug-ins have highlighted (PageViewHighlightText) onto the drawing shown, also while one is called;
  /// true when there is something new to show. The drawing itself stays, and no plug-in is called.
  bool showHighlights();
  /// Called when the page in front is invalid or its highlights have changed, from within the call into the plug-in.
  std::function<void()> pageListener;
  const Shown &shown() const { return shown_; }
  /// Since when the page in front is waited for.
  std::optional<std::chrono::steady_clock::time_point> waitingSince() const { return waitingSince_; }
  /// What went wrong with the page in front, or empty.
  std::string pageError() const;

  /// Counts everything that a window may have to show anew.
  uint64_t changes() const { return changes_; }
  void touch() { ++changes_; }
  /// The host's own line on the status line; one error line goes to standard error, too.
  const std::string &message() const { return message_; }
  void say(std::string line);
  void complain(std::string line);
  std::string title() const;
  std::vector<int32_t> markedPages() const;

  const PageCache &cache() const { return cache_; }
  double screenDpi() const { return screenDpi_; }

  static constexpr size_t cacheBytes = size_t{64} * 1024 * 1024;

private:
  struct OpenDocument {
    uint64_t number = 0;
    host::ViewerDocument *document = nullptr;
    Target target;
    std::string password;
    std::map<int32_t, std::string> errors; ///< of pages
    std::vector<int32_t> withWords;        ///< pages whose words are kept, the one seen last at the end
  };
  struct Pending {
    uint64_t number = 0;
    Target target;
    std::string password;
    std::optional<uint64_t> replaces; ///< the open document that it is a newer state of
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
  void sayOpened();
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
  Renderer::Results arrived_; ///< to be taken over
  std::optional<SearchResult> searched_;
  std::exception_ptr failure_; ///< the first one of a collect()
  int failures_ = 0;           ///< calls of collect() in a row that failed
  PageCache cache_{cacheBytes};
  Shown shown_;
  uint64_t shownDocument_ = 0;                   ///< the number of the document drawn
  std::vector<host::MarkedArea> highlights_;     ///< that are on the drawing shown
  std::optional<host::Image> withoutHighlights_; ///< that drawing as page-draw procedures left it, where there are any
  std::optional<std::chrono::steady_clock::time_point> waitingSince_;
  FindRequest request_;
  std::optional<FoundOnPage> found_;
  bool searching_ = false;
  bool wrapsAtOnce_ = false;
  std::string findMessage_, message_, openingLine_, offPageLine_;
  uint64_t changes_ = 1;
  Renderer renderer_; ///< the threads go first
  Searcher searcher_;
};

} // namespace viewer
