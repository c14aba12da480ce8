# dqtool_test.py DQTOOL
"""dqtool at a shell prompt, its commands but for run."""

import os
import re
import resource
import stat
import subprocess
import zlib

import transcript

STAMP = transcript.STAMP.encode()


class AnswersTest(transcript.TranscriptTest):
    def test_numbers_templates_ids_paths_and_texts(self):
        self.play(r"""
            [bigint]
            123456789012345678901234567890 + 1 => 123456789012345678901234567891 ;; -5 - -5 => 0
            99999999999 '*' -10 => -999999999990 ;; -7 / 2 => -3 ;; 7 % -7 => -0
            3 % 5 --json => {"result":"5"} ;; -2 '<' 1 => true ;; 1 '<' 1 =>1 false
            -0 = 000 --json => {"result":true} ;; -1234567 int => -234567
            -1234567 INT --json => {"result":-234567} ;; 1 / -0 =>1 ! division by zero
            1-2 + 1 =>1 ! no number: '1-2' ;; 1 + - =>1 ! no number: '-'
            '' int =>1 ! no number: '' ;; 1 ^ 1 =>2 ! OPERATION is one of + - * / % < =, not '^'
            0 % 0 =>1 ! division by zero ;; =>2 ! an A, an OPERATION and a B are needed
            1 int 2 3 =>2 ! int takes no words
            [template]
            t.sql := DROP $$a$$;\n$$a$$\n ;; zeros := a\0b ;; --set a=x=y '<$$a$$$$a$$>' => <x=yx=y>
            --file t.sql --set=a=B => DROP B;\nB ;; --set a=1 --set b= '$$a$$$$b$$.' => 1.
            --file - --set a=B --json < $$a$$\n\xff => {"text":{"hex":"420aff"}}
            -- --set => --set
            --set a=B '$$A$$ $$a$$' =>1 $$A$$ B ! DQTemplateEngine::Process - Variable  '$$A$$' is not in the dictionary.
            --file zeros =>1 ! no text: zeros ;; --file none =>1 ! cannot read none: No such file or directory
            --set a x =>2 ! --set needs NAME=VALUE, not 'a' ;; --set =a x =>2 ! --set needs NAME=VALUE, not '=a'
            --file a --file b =>2 ! --file stands twice
            -x =>2 ! no option -x; a word that begins with '-' stands behind '--'
            --file t.sql x =>2 ! either a TEXT or --file is needed
            =>2 ! either a TEXT or --file is needed ;; --file =>2 ! --file needs a FILE
            'cost $$5' =>1 cost $$5 ! DQTemplateEngine::Process - Malformed variable encountered in input string 'cost $$5'.
            --set 'a$$b=B' x =>1 x ! DQTemplateEngine::SetVariable - Attempting to set malformed variable '$$a$$b$$'.
            [guid]
            0012abcd-0234-F678-9abc-def01234567f => 0012ABCD-0234-F678-9ABC-DEF01234567F\n0X0012ABCD, 0X0234, 0XF678, 0X9A, 0XBC, 0XDE, 0XF0, 0X12, 0X34, 0X56, 0X7F\n{0012ABCD-0234-F678-9ABC-DEF01234567F}
            --json 0012abcd-0234-F678-9abc-def01234567f => {"odl":"0012ABCD-0234-F678-9ABC-DEF01234567F","struct":"0X0012ABCD, 0X0234, 0XF678, 0X9A, 0XBC, 0XDE, 0XF0, 0X12, 0X34, 0X56, 0X7F","registry":"{0012ABCD-0234-F678-9ABC-DEF01234567F}"}
            {0012abcd-0234-F678-9abc-def01234567f} =>1 ! no identifier: '{0012abcd-0234-F678-9abc-def01234567f}'
            [path]
            Relative 'c:\\data\\app' 'C:\\Data\\App\\sql\\a.sql' => .\\sql\\a.sql
            absolute 'c:\\data\\app' '..\\other\\a.sql' --json => {"path":"c:\\\\other\\\\a.sql"}
            universal /data/App => /data/App ;; =>2 ! relative, absolute or universal is needed
            relativ x y =>2 ! relative, absolute or universal is needed, not 'relativ'; did you mean 'relative'?
            relative x =>2 ! a BASE and a PATH are needed
            universal x y =>2 ! PATH is one text; put it in quotes
            universal 'c:\\data' => ~\\\\[^\\]+\\c\$\\data
            [text]
            44020 => This Feature is Under Construction.
            44030 ora1 --json => {"id":44030,"text":"Start Task: On ora1"}
            44030 => Start Task: On %s ;; 44030 '' => Start Task: On\x20
            44030 %d%s => Start Task: On %d%s ;; 44030 -- -x => Start Task: On -x
            23528 net 5 => net failed with error code5.\r\n%s ;; 44088 a b 7 => Error: a\nFile: b,  Line 7
            61714 1 9 => Please enter an integer between 1 and 9.
            4294967295 =>1 ! no string with id 4294967295
            99999999999999999999 =>1 ! no string with id 99999999999999999999
            12x =>2 ! ID is a number, not '12x' ;; -1 =>2 ! ID is a number, not '-1'
            '' =>2 ! ID is a number, not '' ;; 44020 more =>2 ! 1 ARG more than the string has places
            """)

    def test_trees(self):
        self.play(r"""
            [tree]
            t.tsv := b\t900 KB\t2024-05-06\nA\t10 MB\t5/7/2024\r\n\tz\t1\n\ty\t2\n\t\t\t\tdeep\nc\tx ;; zero := a\0b ;; empty :=
            t.tsv => b\t900 KB\t2024-05-06\r\nA\t10 MB\t5/7/2024\r\n\tz\t1\t\r\n\ty\t2\t\r\n\t\tdeep\t\t\r\nc\tx\t\r
            - --copy --types text,text < a\nb => a\t\r\nb\t\r ;; empty => ;; - --sort 0 < a => a\r
            t.tsv --sort 1 --types Text,NUMBER => c\tx\t\r\nb\t900 KB\t2024-05-06\r\nA\t10 MB\t5/7/2024\r\n\tz\t1\t\r\n\ty\t2\t\r\n\t\tdeep\t\t\r
            - --sort 1 --descending --types text,number < a\t1\nb\t2\nc\t2 => b\t2\r\nc\t2\r\na\t1\r
            - --sort=1 --types text,datetime < a\t5/7/2024\nb\t2024-05-06 => b\t2024-05-06\r\na\t5/7/2024\r
            - --sort 0 < b\nB\na => a\r\nb\r\nB\r ;; t.tsv --save out.tab => ;; t.tsv --print out.pdf =>
            t.tsv --sort 3 =>1 ! no column 3: there are 3, counted from 0 ;; zero =>1 ! no text: zero
            t.tsv --sort x =>2 ! COLUMN is a number from 0 to 2147483647, not 'x'
            t.tsv --types text,numbr =>2 ! a type is text, number or datetime, not 'numbr'; did you mean 'number'?
            t.tsv --descending =>2 ! --descending is for --sort
            t.tsv --copy --save x =>2 ! either --copy, --save or --print ;; t.tsv --save '' =>2 ! FILE is empty
            empty --print x.pdf =>1 ! there is nothing to print
            t.tsv --save none/x =>1 ! cannot write none/x: No such file or directory
            t.tsv --print none/x =>1 ! cannot print into none/x: No such file or directory
            none =>1 ! cannot read none: No such file or directory
            """)
        self.assertEqual(self.content("out.tab"), b"b,900 KB,2024-05-06\r\nA,10 MB,5/7/2024\r\n"
                         b"z,1,\r\ny,2,\r\ndeep,,\r\nc,x,\r\n")
        self.assertTrue(self.content("out.pdf").startswith(b"%PDF-"))

    def test_output(self):
        self.play(r"""
            [output]
            < 0\tx\n5\ta\\nb\\\\c\tof\n9\ty => ~[0-9:.]+\tProgram\tx\n[0-9:.]+\tDBMS\ta\n\t\tb\\c    of\n[0-9:.]+\tProgram\ty
            --max 1 < 0\tx\nno\nx\ty\n\ty\n1\t\0\n6\tz =>1 ~[0-9:.]+\tStart Task: On [0-9:.]+\tz ! line 2: no tab\nline 3: the type is no number: 'x'\nline 4: the type is no number: ''\nline 5: a zero byte
            --json --log rows --limit 1 < 9999999999\tx\n => ~.{2}{"time":"[0-9:.]+","source":"Program","text":"x"}.]
            --log /dev/full < 1\ta\\nb =>1 ~[0-9:.]+\tProgram\ta\n\t\tb ! rows missing in /dev/full: 2
            --limit 1 =>2 ! --limit needs --log ;; --max 0 =>2 ! N is a number from 1 to 2147483647, not '0'
            --log '' =>2 ! FILE is empty ;; --log $D =>1 ! cannot write $D: Is a directory ;; =>
            """)
        self.assertRegex(self.content("rows"), rb"\A[0-9:.]+ Program x\r\n\Z")

    def test_logs(self):
        self.play(r"""
            [log]
            --once x.log '' => ;; x.log '' => ;; x.log 'two words' =>
            x.log x --max -1 =>2 ! KB is a number from 0 to 4294967295, not '-1'
            '' x =>2 ! FILE is empty ;; --once $D x =>1 ! cannot write $D: Is a directory
            $D x =>1 ! Unable to open Log file for writing...
            /dev/full x =>1 ! cannot write /dev/full: No space left on device
            none/x.log x =>1 ! Unable to open Log file for writing\ncannot write none/x.log: No such file or directory ;; - text => ~$STAMP  text\r
            """)
        # Without its locale a program writes as in the United States.
        self.environment["LC_ALL"] = "xx_YY.UTF-8"
        self.play("log x.log 'no locale' =>")
        self.assertRegex(self.content("x.log"), rb"\A" + STAMP + rb"\r\n\r\n" + STAMP +
                         rb"  two words\r\n" + STAMP + rb"  no locale\r\n\Z")
        self.path("x.log", b"-" * 1024)
        self.play("log --max 1 x.log text => ! Log file length has exceeded the maximum...")
        self.assertGreater(os.path.getsize(self.path("x.log")), 1024)
        self.play("log --once --max=1 x.log text =>")
        self.assertRegex(self.content("x.log"), rb"\A" + STAMP + rb"\r\ntext\r\n\Z")
        self.environment["TMPDIR"] = self.path("none")
        self.play("log - x =>1 ! cannot write into $D/none/: No such file or directory")

    def test_system_and_identity_are_a_name_and_a_value_a_line(self):
        self.play(r"""
            system => ~OSVersionInfo\t[^\n]*\nUserName\t[^\n]*\nComputerName\t\\\\[^\n]+\nHostName\t[^\n]*\nSpecialFolderPath\t$D/config\nAppDataPath\t$D/config/Velmora/dqtool/\nSharedDataPath\t$D/config/Velmora/Shared/\nDefaultWebBrowser\t\nDefaultWebBrowserType\t0\nCurrentDate\t[^\n]*\nTickCount\t[^\n]*\nCurrentDateTime\t$STAMP\nFormattedDate\t[^\n]*\nFormattedTime\t[^\n]*\nFormattedDateTime\t[^\n]*\nMilliSecPos\t-1\nIsWindows95\tfalse\nIsWindowsNT\ttrue\nIsTerminalServer\tfalse\nIsIE4Installed\tfalse\nIsCurrentUserAdmin\t[^\n]*\nIsSufficientResources\t[^\n]*
            system --json => ~{"OSVersionInfo":"[^"]*","UserName":"[^"]*","ComputerName":"\\{4}[^"]+","HostName":"[^"]*","SpecialFolderPath":"$D/config","AppDataPath":"$D/config/Velmora/dqtool/","SharedDataPath":"$D/config/Velmora/Shared/","DefaultWebBrowser":"","DefaultWebBrowserType":0,"CurrentDate":"[^"]*","TickCount":"[^"]*","CurrentDateTime":"$STAMP","FormattedDate":"[^"]*","FormattedTime":"[^"]*","FormattedDateTime":"[^"]*","MilliSecPos":-1,"IsWindows95":false,"IsWindowsNT":true,"IsTerminalServer":false,"IsIE4Installed":false,"IsCurrentUserAdmin":(true|false),"IsSufficientResources":(true|false)}
            identity => ~.*\nExecutablePath\t$DQTOOL\n.*
            identity --app QUILLBASE --exe 'C:\\Bin\\Tool.exe' --file-version 7.12.3.4 => LanguageString\t040904b0\nVersionString\t7.12.3.4\nComments\t\nCompanyName\t\nFileDescription\t\nInternalName\t\nLegalCopyright\t\nLegalTrademarks\t\nOriginalFileName\t\nProductVersion\t\nAppCode\tQUILLBASE\nTitle\t\nExecutablePath\tC:\\Bin\\Tool.exe\nExecutableDirectory\tC:\\Bin\nRunningFromNetwork\tfalse\nOptionsFile\tQuill.dqo\nRegistryKey\tTool\nProductName\t\nSplashIDB\t0\nLongVersionNumber\t7.12.3.4\nMediumVersionNumber\t7.12.3\nShortVersionNumber\t7.12\nMajorVersionNumber\t7\nMinorVersionNumber\t2\nBuildNumber\t4\nIsAppLumenSql\tfalse\nIsAppDeltaKeeper\tfalse\nIsAppQuillbase\ttrue\nIsAppDQPacer\tfalse
            tool.version := FileVersion=1.2.3.4\nProductName=The Tool\nTranslation=0407,04e4\n
            identity --exe $D/tool --json => {"LanguageString":"040704e4","VersionString":"1.2.3.4","Comments":"","CompanyName":"","FileDescription":"","InternalName":"","LegalCopyright":"","LegalTrademarks":"","OriginalFileName":"","ProductVersion":"","AppCode":"","Title":"","ExecutablePath":"$D/tool","ExecutableDirectory":"$D","RunningFromNetwork":false,"OptionsFile":"tool.dqo","RegistryKey":"tool","ProductName":"The Tool","SplashIDB":0,"LongVersionNumber":"1.2.3.4","MediumVersionNumber":"1.2.3","ShortVersionNumber":"1.2","MajorVersionNumber":1,"MinorVersionNumber":2,"BuildNumber":4,"IsAppLumenSql":false,"IsAppDeltaKeeper":false,"IsAppQuillbase":false,"IsAppDQPacer":false}
            system x =>2 ! it takes no words
            [identity]
            --exe '' =>2 ! PATH is empty
            --app Foo =>2 ! no application 'Foo'; there are 'Lumen SQL', 'Velmora Delta Keeper', 'Quillbase', 'Velmora Pacer'
            --file-version 7.x =>2 ! V is numbers with dots between, not '7.x'
            --file-version 7. =>2 ! V is numbers with dots between, not '7.'
            """)

    def test_platforms_kinds_of_objects_names_and_versions(self):
        self.play(r"""
            [platform-text]
            SQLServer => SQL Server ;; db2os390 --json => {"text":"DB/2"}
            orcale =>2 ! no platform orcale; did you mean 'oracle'?
            [type-text]
            42 --platform db2os390 => Stogroup
            STOGROUP --platform db2os390 --json => {"value":42,"text":"Stogroup"}
            stogroup => Nodegroup ;; -1 => Unknown
            tabel =>2 ! no kind of objects 'tabel', by number or name; did you mean 'Table'?
            1x =>2 ! no kind of objects '1x', by number or name
            99999999999 =>2 ! no kind of objects '99999999999', by number or name
            [types]
            =>2 ! --platform P is needed ;; --platform oracle --version -1 =>2 ! V is a version, not '-1'
            --platform oracle --version 8..1 =>2 ! V is a version, not '8..1' ;; --platform oracle --version .8 =>2 ! V is a version, not '.8'
            --platform oracle --version 'Release 8.1234567890' =>2 ! V is a version, not 'Release 8.1234567890'
            --platform oracle --version 1e999 =>2 ! V is a version, not '1e999'
            --platform oracle --app '' =>2 ! no application ''; there are 'Lumen SQL'...
            [words]
            m_pszof => OF ;; m_pszendofln => \\x0d\\x0a
            M_PSZENDOFLN --json => {"name":"m_pszEndOfLn","word":"\\r\\n"} ;; of =>1 ! no word is named of
            m_pszoff =>1 ! no word is named m_pszoff; did you mean 'm_pszof'?
            => ~m_pszMlsLabel\tMLSLABEL\n([^\n]*\n){196}m_pszYes\tY
            a b =>2 ! NAME is one text; put it in quotes
            [types --platform]
            db2os390 --reduced => ~.*\n7\tDatabase\n42\tStogroup\n36\tTablespace\n34\tSynonym
            oracle --version 8.1.7 => ~.*\n80\tMaterialized View\n.*
            oracle --version 'Oracle8i Release 8.1.7.0.0' => ~.*\n80\tMaterialized View\n.*
            oracle => ~.*\n88\tRedo Log Group\n.* ;; oracle --app 'lumen sql' => ~((?!88\t).)*
            db2 --json => ~\[\n{"value":16,"text":"Index"},\n.*
            [quote]
            --platform sybase a 'a b' order 'n\xc3\xa4' => a\n"a b"\n"order"\n"n\xc3\xa4"
            --platform sqlserver --version 6.50.201 1x => "1x"
            1x a]b --platform sqlserver '' --version 08.00.0194 => [1x]\n[a]b]\n
            --platform oracle --case-sensitive emp EMP => "emp"\nEMP
            --platform=DB2 --no-quoting emp ++ [a,b] -- -- --json => emp\n++\n[a,b]\n--\n--json
            --platform db2 --json < => []
            --platform db2 --json < a\n\xff => [\n{"name":"a","quoted":"\\"a\\""},\n{"name":{"hex":"ff"},"quoted":{"hex":"22ff22"}}\n]
            --platform db2 < A\na\n\nB\0\nlast => A\n"a"\n\n"B\0"\n"last"
            --platform none x =>2 ! the platform none quotes no names
            --platform db3 x =>2 ! no platform db3; did you mean 'db2'?
            --platform =>2 ! --platform needs a P ;; --platform= x =>2 ! no platform ''
            --platform db2 --platform db2 x =>2 ! --platform stands twice
            --platform sqlserver --version x y =>2 ! V is a version, not 'x'
            --platform db2 --json=1 x =>2 ! --json takes no value
            --platfrom db2 x =>2 ! no option --platfrom; did you mean '--platform'?
            dqtool option get 50270 => 0 ;; dqtool option set 50270 1 => ;; --platform oracle emp => "emp"
            [split-name]
            a.b => a\nb ;; a.b.c.d --json => {"parts":["a","b","c.d"]} ;; a =>1 ;; a..b --json =>1 {"parts":[]}
            [version]
            --platform oracle 'Oracle8i Release 8.1.7.0.0' => 8.170
            8.1.7 --platform oracle --json => {"version":"8.17"} ;; --platform oracle 8.1.7 >= 8.1 => true
            --platform oracle 8.1.7 '>' 8.1 --json =>1 {"result":false}
            --platform db2 ? == 0 => true ! no version in '?'
            --platform oracle nonsense => nonsense ! no version in 'nonsense'
            --platform db2 8.1 '<' 1e5 =>2 ! NUMBER is a decimal number, not '1e5'
            --platform db2 8.1 = 8 =>2 ! no operator '='
            --platform db2 8.1 '<' nan =>2 ! NUMBER is a decimal number, not 'nan'
            --platform db2 8 '<' =>2 ! a TEXT, an OP and a NUMBER are needed
            """)
        directory = os.open("/", os.O_RDONLY)
        self.addCleanup(os.close, directory)
        for words in [["quote", "--platform", "db2"], ["template", "--file", "-"], ["objects", "-", "list"],
                      ["date", "convert", "--platform", "db2", "--in", "DD", "--out", "DD"]]:
            self.assertEqual(self.dqtool(*words, stdin=directory),
                             (1, b"", f"dqtool: {words[0]}: cannot read standard input\n".encode()))

    def test_objects_and_their_templates(self):
        os.mkdir(self.path("Oracle"))
        os.symlink("loop", self.path("loop"))
        self.play(r"""
            [creation-template]
            Oracle/CRTable.tpl := CREATE TABLE $$object_owner$$.$$object_name$$\n
            Oracle/CRProc.tpl :=
            --platform oracle --root $D --type Table --owner SCOTT --name EMP => CREATE TABLE SCOTT.EMP
            --platform oracle --root $D --type 35 --owner S --name E --json => {"text":"CREATE TABLE S.E"}
            --platform oracle --root $D --type 35 --name E =>1 ! no object of this type has the owner '' and the name 'E'
            --platform oracle --type 9999 --owner O --name E =>2 ! no kind of objects has the number 9999
            --platform oracle --root $D --type 1 --name E --owner O =>1 ! the platform has no template of this type
            --platform oracle --root $D --type 40 --name E --owner O =>1 ! Error:  Failed to open the template file '$D\\Oracle\\CRView.tpl'.
            --platform oracle --root $D --type 21 --name E --owner O =>1 ! no text in $D\\Oracle\\CRProc.tpl
            --platform oracle --type viw =>2 ! no kind of objects 'viw', by number or name; did you mean 'View'?
            [objects]
            map list =>1 ! there is no file map ;; map add r table O N =>
            map add a 40 own 'a\tb' => ;; map add r 16 P Q => ;; map list => a\t40\town\ta\\x09b\nr\t16\tP\tQ
            map list --json => [\n{"key":"a","type":40,"owner":"own","name":"a\\tb"},\n{"key":"r","type":16,"owner":"P","name":"Q"}\n]
            - list < => ;; bad := \1\0\1
            bad add k 1 o n =>1 ! Error:  Failed to read object map file 'bad'...
            bad list =>1 ! Error:  Failed to read object map file 'bad'...
            loop list =>1 ! Error:  Failed to open object map file 'loop'...
            loop add k 1 o n =>1 ! Error:  Failed to open object map file 'loop'...
            map add k 0 o n =>2 ! no kind of objects has the number 0
            map add k 89 o n =>2 ! no kind of objects has the number 89 ;; '' list =>2 ! FILE is empty
            - add k 1 o n =>2 ! standard input can't be changed; for a file of that name: ./-
            map =>2 ! list or add is needed ;; =>2 ! a FILE is needed, and list or add
            """)
        self.assertEqual(os.path.getsize(self.path("bad")), 3)
        self.assertEqual(self.dqtool("objects", "-", "list", input=self.content("map"))[1],
                         b"a\t40\town\ta\\x09b\nr\t16\tP\tQ\n")

    def test_dates(self):
        self.play(r"""
            [date]
            notation --from LOCALE --to display 'dddd, MMMM d' => DAY,D MONTH dd
            notation --from ole --to display %Y --json => {"format":"YYYY"}
            notation --from display --to ole -- -MM =>1 ! can't be converted: '-MM'
            notation --from win --to ole %m =>2 ! a notation is display, ole or locale, not 'win'
            valid hh:mm:ss => true ;; valid hh:mm:ss --notation display --json =>1 {"result":false}
            valid MM --notation ol =>2 ! a notation is display, ole or locale, not 'ol'; did you mean 'ole'?
            valid MM --notation =>2 ! --notation needs an N
            part --code 26 'MM/DD/YYYY HH12:MI:SS AM' => HH12:MI:SS AM
            part --code 5 nonsense =>1 ! no format: 'nonsense'
            part --code 99999999999 MM =>2 ! CODE is a number, not '99999999999'
            part MM --code 5 --platform db2 =>2 ! --platform is no option of this form
            convert --platform oracle --in 'MM/DD/YYYY HH12:MI:SS AM' --out 'YYYY-MM-DD HH24:MI:SS' '04/03/1993 05:34:00 PM' => 1993-04-03 17:34:00
            convert --platform oracle --in MM/DD/YYYY --out YYYY x [NULL] =>1 x\n[NULL] ! 'x' can't be read by MM/DD/YYYY\n'[NULL]' can't be read by MM/DD/YYYY
            convert --platform DB2 --code 5 --in 'MM/DD/YYYY HH12:MI:SS AM' --out 'YYYY-MM-DD HH24:MI:SS' < 04/03/1993\n04/04/1993 => 1993-04-03\n1993-04-04
            convert --platform db2 --in MM --out MM --code 27 1 =>1 1 ! '1' can't be read by MM
            convert --platform sybase --in DD/MM/YYYY --out YYYY --json 3/4/1993 => [\n{"value":"3/4/1993","result":"1993","converted":true}\n]
            convert --platform db2 --in nonsense --out MM 1 =>2 ! --in is no display or ole format: 'nonsense'
            convert --platform db2 --in MM --out '' 1 =>2 ! --out is no display or ole format: ''
            convert --platform db2 --in MM --out MM --code 7 1 =>2 ! CODE is 5, 6, 19, 20, 26 or 27, not '7'
            convert --platform none --in MM --out MM 1 =>2 ! no date-time formats for none
            default --platform db2 => current\tmm/dd/YYYY hh12:MI:SS AM\nsaved\tmm/dd/YYYY hh12:MI:SS AM\ndefault\tYYYY-MM-DD HH24:MI:SS
            dqtool option get 60000 => "" ;; dqtool settings list => ;; dqtool option set 60000 DD.MM.YY =>
            default --platform db2 --json => [\n{"choice":"current","format":"DD.MM.YY"},\n{"choice":"saved","format":"DD.MM.YY"},\n{"choice":"default","format":"YYYY-MM-DD HH24:MI:SS"}\n]
            dqtool option set date_format 'no format' =>1 ! option 60000 takes a format in display notation, not 'no format'
            dqtool settings set Software/Velmora/dqtool/Options 60000 'no format' =>
            default --platform db2 => current\tYYYY-MM-DD HH24:MI:SS\nsaved\tYYYY-MM-DD HH24:MI:SS\ndefault\tYYYY-MM-DD HH24:MI:SS ! option 60000 holds no format: 'no format'
            default --platform db2 x =>2 ! default takes no words
            cells => ~1\tmm\t%#m\tM\tSingle digit month of the year\t7\n([^\n]*\n){26}[^\n]*
            formats => ~([^\n]*\n){17}5\t03-Apr-93\tDD-MON-YY HH12:MI:SS AM\t%d-%b-%y\tdd-MMM-yy(\n[^\n]*){5}
            x =>2 ! cells, formats, notation, valid, part, convert or default is needed, not 'x'
            valid =>2 ! a FORMAT is needed ;; convert --in MM --out MM 1 =>2 ! --platform P is needed
            """)


class SettingsTest(transcript.TranscriptTest):
    def test_options(self):
        self.play(r"""
            [option]
            get 50144 => 1400 ;; set OUTPUT_pane_entries 12 =>
            get 50144 --json => {"id":50144,"kind":"int","name":"output_pane_entries","value":"12"}
            unset 50144 => ;; get output_pane_entries => 1400
            set 50144 x =>1 ! option 50144 takes a number from 0 to 2147483647, not 'x'
            set 50198 3 =>1 ! option 50198 takes a number from 0 to 2, not '3'
            set 50198 -1 =>1 ! option 50198 takes a number from 0 to 2, not '-1'
            set 50184 2 =>1 ! option 50184 takes a value of the kind bool, not '2'
            set 50186 0aF =>1 ! option 50186 takes a value of the kind binary, not '0aF'
            set 50186 0aFf => ;; get 50186 => 0aff ;; set 1 12 =>1 ! no option with id 1
            get 99999999999 =>1 ! no option with id 99999999999
            get output_log_fiel =>2 ! ID is an option's number or name, not 'output_log_fiel'; did you mean 'output_log_file'?
            get 50390 --platform Oracle => / ;; --platform oracle set 50390 go =>
            get 50390 --platform oracle => go ;; unset 50390 --platform oracle =>
            get 50390 --platform oracle => / ;; set 50255 'a\tb\nc' => ;; get 50255 => a\tb\nc
            list => ~.*\n50255\tstring\toutput_log_file\ta\\x09b\\x0ac\n.*52500\tbool\tsyntax_coloring\t1\n.*
            list --json => ~.*{"id":50255,"kind":"string","name":"output_log_file","value":"a\\tb\\nc"}.*
            set 50180 1 --platform oracle =>2 ! option 50180 has one value for all platforms, without --platform
            get =>2 ! an ID is needed ;; set =>2 ! an ID and a VALUE are needed
            get '' =>2 ! ID is an option's number or name, not ''
            set 50144 2147483648 =>1 ! option 50144 takes a number from 0 to 2147483647, not '2147483648'
            --platform acme list =>2 ! no platform acme
            lits =>2 ! list, get, set or unset is needed, not 'lits'; did you mean 'list'?
            """)
        os.makedirs(self.path("unreadable/velmora/registry/hkcu.reg"))
        self.environment["XDG_CONFIG_HOME"] = self.path("unreadable")
        self.play(r"""
            [option]
            list =>1 ! Settings could not be read... ;; get 50270 --json =>1 ! Settings could not be read...
            unset 50270 =>1 ! Option 50270 could not be reset: Invalid argument\noption 50270 could not be reset
            dqtool dialog 44510 --script - < press 2 =>1 cancel ! Settings could not be read. Until they can, their defaults hold.\nCause: Invalid argument...
            """)

    def test_settings(self):
        self.play(r"""
            [settings]
            export --json => {"text":"REGEDIT4\\r\\n\\r\\n[HKEY_CURRENT_USER]\\r\\n"}
            list --json => [] ;; set Soft/Tool Name 'C:\\data' =>
            set '\\Soft\\tool\\' '' 'a\tb\nc' => ;; set 'Soft\\Tool/Sub' x '' => ;; list => [Soft]
            LIST soft/TOOL => \tstring\ta\\x09b\\x0ac\nName\tstring\tC:\\data\n[Sub]
            list soft/TOOL --json => [\n{"name":"","kind":"string","value":"a\\tb\\nc"},\n{"name":"Name","kind":"string","value":"C:\\\\data"},\n{"key":"Sub"}\n]
            get Soft/Tool NAME --json => {"kind":"string","value":"C:\\\\data"}
            get Soft/Tool '' => a\tb\nc ;; get Soft/Tool none =>1 ! no value none in Soft\\Tool
            list none =>1 ! no key none ;; delete Soft/Tool Name =>
            delete Soft/Tool Name =>1 ! no value Name in Soft\\Tool ;; delete Soft =>
            delete Soft =>1 ! no key Soft ;; list => ;; set A/Old/Sub x 1 => ;; rename a/old New =>
            rename A/New NEW => ;; list A => [NEW] ;; set B kept 2 => ;; rename 'A\\New' /B =>
            list B => kept\tstring\t2\n[Sub] ;; rename 'A\\New' C =>1 ! no key A\\New
            rename B B/Sub =>1 ! B could not be renamed to B\\Sub
            delete / =>2 ! KEY is the root, which stays ;; rename K '\\' =>2 ! NEW is empty
            rename '' X =>2 ! KEY is the root, which stays ;; delete =>2 ! a KEY is needed
            set K N =>2 ! a KEY, a NAME and a VALUE are needed ;; export K =>2 ! export takes no words
            import none.reg =>1 ! cannot read none.reg: No such file or directory
            """)
        self.dqtool("settings", "set", "B/Sub", "much", "x" * 7680)
        self.play(r"settings rename B C =>1 ! B\\Sub holds a value that is too large to be moved")
        self.play(r"settings list B => kept\tstring\t2\n[Sub]")
        self.dqtool("settings", "set", "Deep" + "/k" * 511, "n", "v")
        self.play("settings rename Deep Moved => ;; settings list Deep =>1 ! no key Deep")
        self.dqtool("settings", "set", "Moved" + "/k" * 512, "n", "v")
        self.play("settings rename Moved Deep =>1 ! Moved has more levels of keys than are moved")
        registry = self.path("config/velmora/registry")
        self.assertEqual({stat.S_IMODE(os.stat(os.path.join(registry, name)).st_mode)
                          for name in os.listdir(registry)}, {0o600})

    def test_settings_are_imported_whole_or_not_at_all(self):
        bad = b"REGEDIT4\n[HKEY_CURRENT_USER\\K]\n\"a\"=\"x\"\nnonsense\n\"b\"=hex:01,\\\n  02,\\\n  0g\n"
        self.path("bad", bad + b"\"c\"=hex:1\n[HKEY_LOCAL_MACHINE\\K]\n\"d\"=\"x\"\n"
                  b"[-HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\" + b"n" * 256 + b"]\n")
        self.play(r"""
            [settings]
            import - < REGEDIT4\r\n\r\n[HKEY_CURRENT_USER]\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n"a"="text"\r\n"b"=hex(2):25,48,25,00\r\n"c"=hex:00,ff\r\n"d"=dword:fffffffe\r\n"e"=hex(b):01,00,00,00,00,00,00,80\r\n"f"=hex(7):78,00,79,00,00\r\n"g"=hex(0):\r\n"h"=hex(1234):41\r\n"i"=hex(4):01\r\n =>
            export => REGEDIT4\r\n\r\n[HKEY_CURRENT_USER]\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n"a"="text"\r\n"b"=hex(2):25,48,25,00\r\n"c"=hex:00,ff\r\n"d"=dword:fffffffe\r\n"e"=hex(b):01,00,00,00,00,00,00,80\r\n"f"=hex(7):78,00,79,00,00\r\n"g"=hex(0):\r\n"h"=hex(1234):41\r\n"i"=hex(4):01\r
            list K => a\tstring\ttext\nb\texpand\t%H%\nc\tbinary\t00ff\nd\tdword\t4294967294\ne\tqword\t9223372036854775809\nf\tmulti\tx\ty\ng\tnone\t\nh\t4660\t41\ni\tdword\t01
            get K f => x\ny ;; get K f --json => {"kind":"multi","value":["x","y"]}
            g.reg := REGEDIT4\n[HKEY_CURRENT_USER\\K]\n"a"=-\n"none"=-\n[-HKEY_CURRENT_USER\\None]\n[HKEY_CURRENT_USER\\L\\M]\n[-HKEY_CURRENT_USER\\L]\n
            import g.reg => ;; get K a =>1 ! no value a in K ;; list => [K]
            import bad =>1 ! bad: line 4 can't be used\nbad: line 5 can't be used\nbad: line 8 can't be used\nbad: line 9 can't be used\nbad: line 10 can't be used\nbad: line 11 can't be used\nbad: line 12 can't be used\nnothing was imported
            headless := [HKEY_CURRENT_USER\\K]\n"a"="x"\n
            import headless =>1 ! headless: line 1: the header is missing\nnothing was imported
            get K a =>1 ! no value a in K
            d.reg := REGEDIT4\n[HKEY_CURRENT_USER\\D\\Sub]\n"x"=dword:7\n[HKEY_CURRENT_USER\\D\\a]\n[HKEY_CURRENT_USER\\D\\Empty]\n
            import d.reg => ;; export => ~.*\\D\\Empty\].*\\D\\Sub\].*\\D\\a\].*
            """)
        before = self.dqtool("settings", "export")
        much = self.path("much.reg", b"REGEDIT4\n[HKEY_CURRENT_USER\\K]\n"
                         b'"a"="2"\n"A"="3"\n"b"=-\n"none"=-\n"new"="n"\n'
                         b"[-HKEY_CURRENT_USER\\D]\n[HKEY_CURRENT_USER\\D\\Sub]\n\"y\"=\"y\"\n"
                         b'[HKEY_CURRENT_USER\\N\\M]\n"c"="c"\n"much"="' + b"x" * 100000 + b'"\n')

        status, out, err = self.dqtool("settings", "import", much, preexec_fn=lambda: (
            resource.setrlimit(resource.RLIMIT_FSIZE, (50000, 50000))))
        self.assertEqual((status, out, err.decode()),
                         (1, b"", f"dqtool: settings: {much}: File too large\n"
                          "dqtool: settings: nothing was imported\n"))
        self.assertEqual(self.dqtool("settings", "export"), before)
        self.play(r"settings import much.reg => ;; settings get K a => 3")
        self.play(r"settings list D/Sub => y\tstring\ty")

    def test_profile_files(self):
        self.play(r"""
            [ini]
            f.ini sections =>
            f.ini set S K 'one\r\ntwo' => ! f.ini: key K in section S isn't read back as the value given
            f.ini set T L '' => ;; f.ini get s k => one\ntwo
            f.ini get s k --json => {"value":"one\\ntwo"} ;; f.ini get T L => ""
            f.ini set T L '"v "' => ! f.ini: key L in section T isn't read back as the value given
            f.ini get T L => v\x20
            f.ini set T L ' v' => ! f.ini: key L in section T isn't read back as the value given
            f.ini sections => S\nT ;; f.ini keys S --json => [\n{"name":"K"}\n]
            - get S K < [S]\nK=1\n => 1 ;; f.ini delete-key S K => ;; f.ini get S K => 0
            f.ini delete-section S => ;; f.ini get S K =>1 ! f.ini: no key K in section S
            f.ini set T L 1 => ;; f.ini get T L => 1
            none/f.ini set S K V =>1 ! none/f.ini: No such file or directory
            - get S K < \xff\xfe[ =>1 ! standard input: Invalid or incomplete multibyte or wide character
            $D set S K V =>1 ! $D: Is a directory ;; $D sections =>1 ! $D: Is a directory
            /dev/full set S K V =>1 ! /dev/full: ... ;; f.ini set 'S]\n[T' K V =>1 ! f.ini: no section can be named 'S]\\x0a[T' ;; f.ini set S K= V =>1 ! f.ini: no key can be named 'K='
            f.ini set '' K V =>2 ! a name is empty
            f.ini gte S K =>2 ! get, set, delete-key, delete-section, sections or keys is needed, not 'gte'; did you mean 'get'?
            - set S K V =>2 ! standard input can't be changed; for a file of that name: ./-
            '' keys S =>2 ! FILE is empty ;; f.ini get S =>2 ! a FILE, an S and a K are needed
            """)
        self.assertEqual(self.content("f.ini"), b"[T]\r\nL=1\r\n")

    def test_questions_and_wrong_usage_write_nothing(self):
        self.environment["TMPDIR"] = self.directory
        for words in ["date default --platform db2", "date convert --platform db2 --in D --out D 1",
                      "option list", "option get 50144", "option unset 50144", "settings list",
                      "settings export", "system", "identity", "types --platform db2", "words",
                      "dialog --list", "dialog options --controls", "dialog options",
                      "ini f.ini get S K", "ini - sections", "objects m list", "log - x",
                      "quote --platform oracle a", "option set 1 1", "option set 50198 9"]:
            self.dqtool(*words.split(" "))
            self.assertEqual(self.dqtool("settings", "list"), (0, b"", b""), words)
        self.assertEqual([name for _, _, names in os.walk(self.directory) for name in names], [])

    def test_menus(self):
        self.play(r"""
            m := item 1 "Alpha"\nseparator\npopup "&P" grayed\nitem 2 "x\\t\\"q\\""\nend\nitem 3 "Gamma" checked\n
            n := item 9 "Gamma"\nitem 65535 "Zeta"\n
            [menu]
            => ~45340\t0\t45341\t\t\tClose this tab window\n.*45350\t2\t57634\t\tc\t&Copy\\x09Ctrl\+C\n.*
            --json => ~\[\n{"menu":45340,"position":0,"id":45341,"picture":null,"mnemonic":"","text":"Close this tab window"},\n.*
            --press C => 45350\t2\t&Copy\\x09Ctrl+C ;; --press x =>1 ;; --press '' =>2 ! CH is one character, not '' ;; --press cx =>2 ! CH is one character, not 'cx'
            m --insert Beta => item 1 "Alpha"\nseparator\npopup "&P" grayed\n  item 2 "x\\t\\"q\\""\nend\nitem 4 "Beta"\nitem 3 "Gamma" checked
            m --extend n => ~.*\nend\nitem 9 "Gamma"\nitem 65535 "Zeta" ;; n --insert a => item 1 "a"\nitem 9 "Gamma"\nitem 65535 "Zeta"
            m --clean => item 1 "Alpha"\nseparator\npopup "&P" grayed\n  item 2 "x\\t\\"q\\""\nend\nitem 3 "Gamma" checked
            m --clean --insert x =>2 ! only one of --insert, --extend and --clean
            - --extend - =>2 ! standard input can be read once
            - < popup "" =>1 ! standard input: line 1: a popup has no end ;; none =>1 ! cannot read none: No such file or directory
            """)

    def test_dialogs_and_the_options_that_they_keep_if_left_by_ok(self):
        self.play(r"""
            [dialog]
            --list => 2712\tObject Type Information\n44510\tOptions\n44530\tDate/Time Format Builder
            2712 --script - < 2754=Table\n2756=O\n2757=T\npress 1 => ok
            'date/time FORMAT builder' --script - < 44531=1993-4-3 5:34:00 PM\npress 1 => ok\nYYYY-mm-dd hh12:MI:SS AM
            44530 --script - --json < press 44552\n44532=DD\n44539=-\n44533=MON\n44540= \n44542=1\n44535=HH24\npress 1 => {"result":"ok","answer":"DD-MON YYYY HH24:MI:SS"}
            44530 --script - < press 2 =>1 cancel
            44530 --script - < press 99 =>1 cancel ! standard input:1: control 99 can't be pressed
            44510 --script - --json < =>1 {"result":"cancel"}
            44510 --script - < 50183=9\nwhat =>1 ! standard input:2: neither 'id=value' nor 'press id'
            Optoins =>2 ! no dialog 'Optoins', as --list shows; did you mean 'Options'?
            =>2 ! a DIALOG or --list is needed
            44510 --script a --controls =>2 ! either --controls or --script
            44510 --list =>2 ! --list stands alone ;; 44510 1 =>2 ! DIALOG is one text; put it in quotes
            44510 --script none =>1 ! cannot read none: No such file or directory
            44530 --controls --json => ~.*{"id":44552,"kind":"button","label":"Customize","value":"","state":"shown","items":\[\]}.*"id":44533,[^}]*"state":"hidden".*
            options --controls => ~2900\tlist\tPage\tEditor\tshown\tEditor\tSQL Formatter\tNames and Scripts\tOutput Pane\tFavorites\tJobs\n.*
            44510 --script - < 2900=Editor\n50183=9\n2900=2\npress 2 =>1 cancel
            44510 --script - < 2900=Editor\n50183=9\n2900=2 =>1 cancel
            44510 --script - < 2900=Editor\n50226=1441\npress 1 =>1 cancel ! Please enter an integer between 0 and 1440.
            44510 --script - < 2900=Editor\n50183=9\n2900=2\n50246=x\npress 1 =>1 cancel ! Please enter an integer.
            44510 --script - < 2900=Editor\n50183=x\n2900=2 =>1 cancel ! Please enter an integer.\nstandard input:3: control 2900 isn't there or doesn't take the value
            44510 --script - < 2900=Editor\n50183=9\n50246=1 =>1 cancel ! standard input:3: control 50246 isn't there or doesn't take the value
            44510 --script - < 2900=Editor\n50183=9\npress 2\n# end\npress 1 =>1 cancel ! standard input: the dialog was closed before the script's end
            dqtool option get 50183 => 4
            44510 --script - < 2900=Editor\n50180=1\n50181=1\n50182=1\n50183= +07 \n50184=1\n50185=00ff80\n50194=1\n50198=Discard it\n50203=1\n50226=8\n50227=1\n50229=1\n2900=SQL Formatter\n50241=3\n50242=Upper case\n50243=1\n50244=1\n50245=Lower case\n50246=9\n50247=10\n50248=11\n50249=1\n50311=12\n50326=13\n50327=1\n2900=Names and Scripts\n50270=1\n50274=1\n50390=a b\n2900=Output Pane\n50144=14\n50255=a b\n50256=1\n50257=15\n2900=Favorites\n50135=a b\n50139=1\n2900=Jobs\n50230=a b\n50231=/tmp\npress 1 => ok
            dqtool option list => ~50135\tstring\tfavorites_root\ta b\n50139\tbool\tfavorites_import_default\t1\n50144\tint\toutput_pane_entries\t14\n50180\tbool\teditor_line_numbers\t1\n50181\tbool\teditor_auto_indent\t1\n50182\tbool\teditor_keep_tabs\t1\n50183\tint\teditor_tab_size\t7\n50184\tbool\teditor_show_blanks\t1\n50185\tcolor\teditor_background\t00ff80\n50186\tbinary\teditor_font\t\n50194\tbool\teditor_reload_silently\t1\n50198\tint\teditor_overwrite_policy\t1\n50203\tbool\teditor_track_files\t1\n50226\tint\teditor_auto_save_minutes\t8\n50227\tbool\teditor_auto_save\t1\n50229\tbool\tworksheet_create\t1\n50230\tstring\tshared_directory\ta b\n50231\tdirectory\tjob_configuration_directory\t/tmp\n50241\tint\tformatter_keyword_case\t2\n50242\tint\tformatter_variable_case\t1\n50243\tbool\tformatter_parameter_per_line\t1\n50244\tint\tformatter_function_case\t0\n50245\tint\tformatter_package_case\t2\n50246\tint\tformatter_tab_size\t9\n50247\tint\tformatter_indent\t10\n50248\tint\tformatter_margin\t11\n50249\tbool\tformatter_expand_tabs\t1\n50255\tstring\toutput_log_file\ta b\n50256\tbool\toutput_log\t1\n50257\tint\toutput_log_limit\t15\n50270\tbool\toracle_lower_case_names\t1\n50274\tbool\tquote_names\t1\n50311\tint\tformatter_expanded_tab_size\t12\n50326\tint\tformatter_retain_blank_lines\t13\n50327\tbool\tformatter_column_per_line\t1\n50390\tstring\tcommand_delimiter\ta b\n50391\tint\toptions_page\t5\n.*
            OPTIONS --script - < 50231=/opens-with-the-last-page\npress 1 => ok
            """)


class ProgramTest(transcript.TranscriptTest):
    def test_help_version_and_what_is_none(self):
        listing = self.dqtool("--help")
        self.assertEqual((listing[0], listing[2]), (0, b""))
        for words in [["help"], ["HELP"], ["-h"], ["--Help"], ["help", "--help"]]:
            self.assertEqual(self.dqtool(*words), listing)
        commands = re.findall(r"^  ([\w-]+) ", listing[1].decode(), re.MULTILINE)
        self.assertEqual(commands, sorted(commands))
        self.assertEqual(len(commands), 27)
        checksum = zlib.crc32(listing[1])
        for command in commands:
            status, out, err = self.dqtool(command, "--help")
            checksum = zlib.crc32(out, checksum)
            self.assertEqual((status, err), (0, b""))
            self.assertTrue(out.startswith(f"usage: dqtool {command}".encode()), out)
            self.assertEqual(self.dqtool("help", command.upper()), (0, out, b""))
            self.assertEqual(self.dqtool(command, "--nonsense")[0], 2)
            # What prints JSON says in which form.
            self.assertEqual(b"[--json]" in out, b"JSON: " in out, command)
        # Read all of the help again before a new sum is put here.
        self.assertEqual(checksum, 1719355684)
        for words in [["x", "--in", "y", "-h"], ["-h", "--in"]]:
            self.assertEqual(self.dqtool("date", *words), self.dqtool("date", "--help"))
        self.play(r"""
            --VERSION => dqtool 7.1.0 ;; --version x =>2 ! dqtool: --version takes no words
            --json text 44030 ora1 => {"id":44030,"text":"Start Task: On ora1"} ;; --platform=db2 quote a => "a"
            --jsno TEXT 44030 =>2 ! dqtool: text: no option --jsno; did you mean '--json'?
            nonsense =>2 ! dqtool: no command named nonsense
            ibgint =>2 ! dqtool: no command named ibgint; did you mean 'bigint'?
            bitngt =>2 ! dqtool: no command named bitngt ;; xxg =>2 ! dqtool: no command named xxg
            urn =>2 ! dqtool: no command named urn; did you mean 'run'?
            'no\x1b[2J\n\x7f' =>2 ! dqtool: no command named no\\x1b[2J\\x0a\\x7f
            help nonsense =>2 ! dqtool: no command named nonsense
            help run text =>2 ! dqtool: help is for one COMMAND at a time
            --hepl =>2 ! dqtool: no option --hepl before a COMMAND; did you mean '--help'?
            """)
        self.assertEqual(self.dqtool(), (2, b"", b"dqtool: a COMMAND is needed\n"
                                                 b"dqtool: 'dqtool --help' lists the commands\n"))

    def test_standard_streams_that_are_closed_or_full_are_told(self):
        # With number 1 free, the first file that is opened would be taken for standard output.
        for command, expected in [
                ("text 44020 >/dev/full", (1, b"", b"text: standard output: No space left on device")),
                ("text 44020 >&-", (1, b"", b"text: standard output: Bad file descriptor")),
                ("run echo hello >&-", (1, b"", b"run: standard output: Bad file descriptor")),
                ("text 44020 >&- 2>&- <&-", (1, b"", b"")),
                ("run echo hello <&-", (0, b"echo hello\nhello\n", b"")),
                ("run echo hello 2>&-", (0, b"echo hello\nhello\n", b"")),
                ("run echo hello <&- 2>&-", (0, b"echo hello\nhello\n", b""))]:
            result = subprocess.run(["sh", "-c", '"$0" ' + command, transcript.DQTOOL],
                                    capture_output=True, timeout=60, check=False)
            err = result.stderr.removeprefix(b"dqtool: ").removesuffix(b"\n")
            self.assertEqual((result.returncode, result.stdout, err), expected, command)
        for words in [["words"], ["words", "--json"], ["date", "cells"]]:
            read_end, write_end = os.pipe()
            os.close(read_end)
            result = subprocess.run([transcript.DQTOOL, *words], stdout=write_end, timeout=60,
                                    stderr=subprocess.PIPE, check=False)
            os.close(write_end)
            self.assertEqual((result.returncode, result.stderr), (141, b""), words)


if __name__ == "__main__":
    transcript.main()
