<?xml version='1.0' encoding='utf-8'?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>AboutPage</name>
    <message>
        <source>Software Version:</source>
        <translation>软件版本：</translation>
    </message>
    <message>
        <source>Device    Version:</source>
        <translation>设备    版本：</translation>
    </message>
</context>
<context>
    <name>AudioPage</name>
    <message>
        <source>模拟音频</source>
        <translation>模拟音频</translation>
    </message>
    <message>
        <source>HDMI音频</source>
        <translation>HDMI音频</translation>
    </message>
</context>
<context>
    <name>EdidSettingDilog</name>
    <message>
        <source>EDID Setting [InChannel%1]</source>
        <translation>EDID设置 [输入通道%1]</translation>
    </message>
    <message>
        <source>OutPut Port %1</source>
        <translation>输出端口 %1</translation>
    </message>
    <message>
        <source>Copy from</source>
        <translation>复制来源</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>EDID file</source>
        <translation>EDID文件</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>上传</translation>
    </message>
    <message>
        <source>请选择更新文件</source>
        <translation>请选择更新文件</translation>
    </message>
    <message>
        <source>支持文件 (*.bin);; 所有文件(*.*);;</source>
        <translation>支持文件 (*.bin);; 所有文件(*.*);;</translation>
    </message>
    <message>
        <source>File is empty</source>
        <translation>文件为空</translation>
    </message>
    <message>
        <source>error</source>
        <translation>错误</translation>
    </message>
</context>
<context>
    <name>GraphicsTestDialog</name>
    <message>
        <source>By pass</source>
        <translation>直通</translation>
    </message>
    <message>
        <source>RGB stripe</source>
        <translation>RGB彩条</translation>
    </message>
    <message>
        <source>16 Gray Scales</source>
        <translation>16级灰度</translation>
    </message>
    <message>
        <source>32 Gray Scales</source>
        <translation>32级灰度</translation>
    </message>
    <message>
        <source>64 Gray Scales</source>
        <translation>64级灰度</translation>
    </message>
    <message>
        <source>Red Grid</source>
        <translation>红色网格</translation>
    </message>
    <message>
        <source>Green Grid</source>
        <translation>绿色网格</translation>
    </message>
    <message>
        <source>Blue Grid</source>
        <translation>蓝色网格</translation>
    </message>
    <message>
        <source>White Grid</source>
        <translation>白色网格</translation>
    </message>
    <message>
        <source>Horizon Scroll</source>
        <translation>水平滚动</translation>
    </message>
    <message>
        <source>Vertical Scroll</source>
        <translation>垂直滚动</translation>
    </message>
    <message>
        <source>Pure Color</source>
        <translation>纯色</translation>
    </message>
    <message>
        <source>Input Graphics test</source>
        <translation>输入测试图</translation>
    </message>
    <message>
        <source>OutPut Graphics test</source>
        <translation>输出测试图</translation>
    </message>
    <message>
        <source>[InChannel%1]</source>
        <translation>[输入通道%1]</translation>
    </message>
    <message>
        <source>[OutChannel%1]</source>
        <translation>[输出通道%1]</translation>
    </message>
</context>
<context>
    <name>HistoryPage</name>
    <message>
        <source>Audio</source>
        <translation>音频</translation>
    </message>
    <message>
        <source>IR</source>
        <translation>红外</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>%1  %2 output %3: input %4 -&gt; %5  (%6)</source>
        <translation>%1  %2 输出 %3：输入 %4 -&gt; %5  （%6）</translation>
    </message>
    <message>
        <source>from here</source>
        <translation>本机操作</translation>
    </message>
    <message>
        <source>reported by the device</source>
        <translation>设备报告</translation>
    </message>
</context>
<context>
    <name>LoginDialog</name>
    <message>
        <source>Orvex系列视频切换软件</source>
        <translation>Orvex系列视频切换软件</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>PassWord</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>记住密码</translation>
    </message>
    <message>
        <source>Connet Fail!</source>
        <translation>连接失败！</translation>
    </message>
    <message>
        <source>username or password error!</source>
        <translation>用户名或密码错误！</translation>
    </message>
    <message>
        <source>connect successful but software error!</source>
        <translation>连接成功，但软件出错！</translation>
    </message>
    <message>
        <source>connect fail!</source>
        <translation>连接失败！</translation>
    </message>
    <message>
        <source>account database unreadable!</source>
        <translation>账户数据库无法读取！</translation>
    </message>
</context>
<context>
    <name>LoginSettingDialog</name>
    <message>
        <source>设备连接设置</source>
        <translation>设备连接设置</translation>
    </message>
    <message>
        <source>Device IP:</source>
        <translation>设备IP：</translation>
    </message>
    <message>
        <source>Port:</source>
        <translation>端口：</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>MessageDistance</name>
    <message>
        <source>传输文件过程网络发生错误！请重新上传</source>
        <translation>传输文件过程网络发生错误！请重新上传</translation>
    </message>
    <message>
        <source>NetWork Error</source>
        <translation>网络错误</translation>
    </message>
    <message>
        <source>传输文件端口连接发生错误！</source>
        <translation>传输文件端口连接发生错误！</translation>
    </message>
</context>
<context>
    <name>MsgDlg</name>
    <message>
        <source>提示</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>NetworkPage</name>
    <message>
        <source>NetWork Setting</source>
        <translation>网络设置</translation>
    </message>
    <message>
        <source>Ip</source>
        <translation>IP地址</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>网关</translation>
    </message>
    <message>
        <source>Subnet</source>
        <translation>子网掩码</translation>
    </message>
    <message>
        <source>Mac</source>
        <translation>MAC地址</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <translation>恢复出厂设置</translation>
    </message>
    <message>
        <source>confirm</source>
        <translation>确认</translation>
    </message>
</context>
<context>
    <name>OtherPage</name>
    <message>
        <source>Caption</source>
        <translation>字幕</translation>
    </message>
    <message>
        <source>CaptionSetting</source>
        <translation>字幕设置</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Buzzer</source>
        <translation>蜂鸣器</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>免登录</source>
        <translation>免登录</translation>
    </message>
    <message>
        <source>UserManager Setting</source>
        <translation>用户管理设置</translation>
    </message>
    <message>
        <source>Usermanage</source>
        <translation>用户管理</translation>
    </message>
    <message>
        <source>Connect Setting</source>
        <translation>连接设置</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>切换用户</translation>
    </message>
</context>
<context>
    <name>PresetsPage</name>
    <message>
        <source>Slot %1 holds "%2". Replace it with the current routing?</source>
        <translation>预设位 %1 已保存“%2”。用当前的切换状态替换它吗？</translation>
    </message>
    <message>
        <source>Save preset</source>
        <translation>保存预设</translation>
    </message>
    <message>
        <source>The device is not connected; slot %1 was not saved.</source>
        <translation>设备未连接，预设位 %1 未保存。</translation>
    </message>
    <message>
        <source>Preset %1</source>
        <translation>预设 %1</translation>
    </message>
    <message>
        <source>The routing was saved in slot %1 on the device, but its name could not be saved in %2.</source>
        <translation>切换状态已保存到设备的预设位 %1，但名称无法保存到 %2。</translation>
    </message>
    <message>
        <source>Database Error</source>
        <translation>数据库错误</translation>
    </message>
    <message>
        <source>The device is not connected; slot %1 was not recalled.</source>
        <translation>设备未连接，预设位 %1 未调用。</translation>
    </message>
    <message>
        <source>Recall preset</source>
        <translation>调用预设</translation>
    </message>
    <message>
        <source>The new name could not be saved in %1; the old name is kept.</source>
        <translation>新名称无法保存到 %1，保留原名称。</translation>
    </message>
    <message>
        <source>The name could not be removed from %1.</source>
        <translation>无法从 %1 删除该名称。</translation>
    </message>
    <message>
        <source>The device keeps the routing of each slot; the names are kept on this computer.</source>
        <translation>每个预设位的切换状态保存在设备上，名称保存在本机。</translation>
    </message>
    <message>
        <source>Slot</source>
        <translation>预设位</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称:</translation>
    </message>
    <message>
        <source>Preset name</source>
        <translation>预设名称</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Recall</source>
        <translation>调用</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>重命名</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>预设</translation>
    </message>
</context>
<context>
    <name>RenameDialog</name>
    <message>
        <source>重命名</source>
        <translation>重命名</translation>
    </message>
    <message>
        <source>新名称:</source>
        <translation>新名称:</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>ResolutionSetDialog</name>
    <message>
        <source>Resolution</source>
        <translation>分辨率</translation>
    </message>
    <message>
        <source>[OutChannel%1]</source>
        <translation>[输出通道%1]</translation>
    </message>
    <message>
        <source>[InChannel%1]</source>
        <translation>[输入通道%1]</translation>
    </message>
</context>
<context>
    <name>RoutingPages</name>
    <message>
        <source>Output %1 did not switch: the device shows input %2.</source>
        <translation>输出 %1 未切换：设备显示为输入 %2。</translation>
    </message>
    <message>
        <source>Not connected: output %1 was not switched.</source>
        <translation>未连接：输出 %1 未切换。</translation>
    </message>
</context>
<context>
    <name>SettingDialog</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Reset the device at %1 to its factory settings? Its routes and settings are lost.</source>
        <translation>将地址为 %1 的设备恢复出厂设置？设备上的切换和设置都将丢失。</translation>
    </message>
    <message>
        <source>Factory reset</source>
        <translation>恢复出厂设置</translation>
    </message>
    <message>
        <source>The device did not take the network settings; it reports %1.</source>
        <translation>设备未接受网络设置；设备报告为 %1。</translation>
    </message>
</context>
<context>
    <name>TitleOrOsdDialog</name>
    <message>
        <source>OSD Setting</source>
        <translation>台标设置</translation>
    </message>
    <message>
        <source>Caption Setting</source>
        <translation>字幕设置</translation>
    </message>
    <message>
        <source>Out%1</source>
        <translation>输出%1</translation>
    </message>
    <message>
        <source>[Input%1]</source>
        <translation>[输入%1]</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>输出</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>显示效果</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>显示</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>向左</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>向右</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>颜色</translation>
    </message>
    <message>
        <source>Text colour</source>
        <translation>文字颜色</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>Content</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Upload text</source>
        <translation>上传文字</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>字体</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>Upload picture</source>
        <translation>上传图片</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>擦除</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>请选择图片路径</source>
        <translation>请选择图片路径</translation>
    </message>
    <message>
        <source>支持图片文件 (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; 所有文件(*.*);;</source>
        <translation>支持图片文件 (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; 所有文件(*.*);;</translation>
    </message>
    <message>
        <source>File is empty</source>
        <translation>文件为空</translation>
    </message>
    <message>
        <source>error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>台标字幕文件大小不能超过4K!</source>
        <translation>台标字幕文件大小不能超过4K!</translation>
    </message>
    <message>
        <source>错误</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>传输文件端口连接发生错误！</source>
        <translation>传输文件端口连接发生错误！</translation>
    </message>
    <message>
        <source>NetWork Error</source>
        <translation>网络错误</translation>
    </message>
</context>
<context>
    <name>Usermanagerdialog</name>
    <message>
        <source>User Management</source>
        <translation>用户管理</translation>
    </message>
    <message>
        <source>User List</source>
        <translation>用户列表</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>User Info</source>
        <translation>用户信息</translation>
    </message>
    <message>
        <source>UserName:</source>
        <translation>用户名：</translation>
    </message>
    <message>
        <source>PassWord:</source>
        <translation>密码：</translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation>确认密码：</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>two password not equation!</source>
        <translation>两次输入的密码不一致！</translation>
    </message>
    <message>
        <source>the change could not be saved!</source>
        <translation>更改未能保存！</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>VolumnSettingDialog</name>
    <message>
        <source>Volume Setting [InChannel%1]</source>
        <translation>音量设置 [输入通道%1]</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>refrensh</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting</source>
        <translation>OrvexMatrixControl  用户:%3  IP:%1  端口:%2 正在连接</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected</source>
        <translation>OrvexMatrixControl  用户:%3   IP:%1  端口:%2  已连接</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected</source>
        <translation>OrvexMatrixControl  用户:%3  IP:%1  端口:%2 已断开</translation>
    </message>
    <message>
        <source>Signal list</source>
        <translation>信号列表</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>Joint</source>
        <translation>拼接</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>音频</translation>
    </message>
    <message>
        <source>模拟音频</source>
        <translation>模拟音频</translation>
    </message>
    <message>
        <source>Infared</source>
        <translation>红外</translation>
    </message>
    <message>
        <source>NetWork Setting</source>
        <translation>网络设置</translation>
    </message>
    <message>
        <source>OtherSetting</source>
        <translation>其他设置</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Administrator</source>
        <translation>管理员</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected</source>
        <translation>OrvexMatrixControl  用户:%3  IP:%1  端口:%2 已连接</translation>
    </message>
    <message>
        <source>Output %1</source>
        <translation>输出 %1</translation>
    </message>
    <message>
        <source>Audio %1</source>
        <translation>音频 %1</translation>
    </message>
    <message>
        <source>音频模式</source>
        <translation>音频模式</translation>
    </message>
    <message>
        <source>数字音频</source>
        <translation>数字音频</translation>
    </message>
    <message>
        <source>Rename(F2)</source>
        <translation>重命名(F2)</translation>
    </message>
    <message>
        <source>OSD Setting</source>
        <translation>台标设置</translation>
    </message>
    <message>
        <source>GraphicsTest</source>
        <translation>图形测试</translation>
    </message>
    <message>
        <source>Volume Setting</source>
        <translation>音量设置</translation>
    </message>
    <message>
        <source>Edid</source>
        <translation>EDID</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>分辨率</translation>
    </message>
    <message>
        <source>Graphics Test</source>
        <translation>图形测试</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>清除</translation>
    </message>
    <message>
        <source>Input %1</source>
        <translation>输入 %1</translation>
    </message>
    <message>
        <source>The new name could not be saved in %1; the old name is kept.</source>
        <translation>新名称无法保存到 %1，保留原名称。</translation>
    </message>
    <message>
        <source>Database Error</source>
        <translation>数据库错误</translation>
    </message>
    <message>
        <source>The database %1 is locked by another program. Accounts and port names can be neither read nor saved until it is released.</source>
        <translation>数据库 %1 被其他程序锁定。在其释放之前，账户和端口名称既不能读取也不能保存。</translation>
    </message>
    <message>
        <source>The database %1 cannot be read: it is damaged or not a database. Accounts and port names can be neither read nor saved.</source>
        <translation>无法读取数据库 %1：文件已损坏或不是数据库。账户和端口名称既不能读取也不能保存。</translation>
    </message>
    <message>
        <source>Not connected: the device was not changed.</source>
        <translation>未连接：设备未更改。</translation>
    </message>
    <message>
        <source>History</source>
        <translation>历史记录</translation>
    </message>
    <message>
        <source>Not connected: nothing was undone.</source>
        <translation>未连接：未撤销任何操作。</translation>
    </message>
    <message>
        <source>Nothing to undo.</source>
        <translation>没有可撤销的操作。</translation>
    </message>
    <message>
        <source>Not connected: the caption cannot be set.</source>
        <translation>未连接：无法设置字幕。</translation>
    </message>
</context>
</TS>