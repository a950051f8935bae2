#include <algorithm>

#include "charts/data/WordCount.h"

namespace ostrel::charts {

std::vector<std::string> const& EnglishStopWords() {
  static std::vector<std::string> const words = [] {
    constexpr std::string_view kWords =
        // Articles, pronouns and determiners.
        "a an the i me my mine myself we us our ours ourselves you your yours yourself yourselves he him his "
        "himself she her hers herself it its itself they them their theirs themselves this that these those "
        "who whom whose which what whoever whatever whichever one ones oneself someone somebody something "
        "anyone anybody anything everyone everybody everything nobody nothing none each every either neither "
        "both all any some no such other others another same own few fewer less least many more most much "
        "several enough "
        // Prepositions and conjunctions.
        "about above across after against along alongside amid among amongst around as at before behind "
        "below "
        "beneath beside besides between beyond but by despite down during except for from in inside into "
        "like near of off on onto out outside over past per since than through throughout till to toward "
        "towards under underneath until up upon via with within without and or nor so yet if unless although "
        "though because while whereas whether when whenever where wherever why how however therefore thus "
        "hence moreover furthermore otherwise instead rather "
        // Verbs that go with others.
        "am is are was were be been being have has had having do does did done doing can could may might "
        "must "
        "shall should will would ought cannot let lets get gets got "
        // Adverbs of place, time and degree.
        "not never ever always often sometimes usually again once twice then now here there already also too "
        "very quite just only even still almost away back else far further indeed perhaps maybe well "
        // Short forms.
        "ain't aren't can't couldn't didn't doesn't don't hadn't hasn't haven't isn't mustn't needn't shan't "
        "shouldn't wasn't weren't won't wouldn't i'm i'd i'll i've you're you'd you'll you've he'd he'll "
        "she'd she'll it'd it'll we're we'd we'll we've they're they'd they'll they've that'll that'd who'd "
        "who'll who're there'll";
    std::vector<std::string> list;
    std::string_view rest = kWords;
    while (!rest.empty()) {
      auto const end = std::min(rest.find(' '), rest.size());
      if (end > 0) list.emplace_back(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return list;
  }();
  return words;
}

}  // namespace ostrel::charts
