# Completion of quilp's commands for fish. The program itself tells what a word may become.

function __quilp_complete
    set -l words (commandline -opc)
    set -l last (commandline -ct)
    for line in ($words[1] --complete $words[2..] "$last" 2>/dev/null)
        if test "$line" = :
            __fish_complete_path "$last"
        else
            echo $line
        end
    end
end

complete -c quilp -f -a '(__quilp_complete)'
